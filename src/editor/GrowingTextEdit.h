// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPlainTextEdit>
#include <QString>

namespace corkwheel {

// A text field that grows with its text, one line at a time, from one line up to
// `maximumLines`; longer text scrolls.
class GrowingTextEdit : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit GrowingTextEdit(int maximumLines, QWidget* parent = nullptr);

    // Shows `text` without announcing it. When the field already shows it, the cursor and
    // the selection stay where the user left them.
    void showText(const QString& text);

    // The lines the text takes at the present width, wrapped lines included.
    int lineCount() const;
    // The lines the field is tall: the text's, but one at least and `maximumLines` at most.
    int visibleLines() const;

Q_SIGNALS:
    // The user changed the text.
    void textEdited(const QString& text);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void fitHeight();

    int m_maximumLines;
    bool m_showing = false;
};

} // namespace corkwheel

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/RunnerFixture.h"
#include "support/ViewTesting.h"

#include "engine/PanelRunner.h"
#include "engine/WebPage.h"
#include "model/Panel.h"
#include "render/PanelContentView.h"

#include <QColor>
#include <QImage>
#include <QImageWriter>
#include <QPalette>
#include <QSignalSpy>
#include <QSize>
#include <QTemporaryDir>
#include <QWidget>

#include <memory>

namespace corkwheel::test {

inline const QColor kRed(255, 0, 0);
inline const QColor kBlue(0, 0, 255);
// The colour of the stand-in web views, which no body draws itself.
inline const QColor kGreen(0, 255, 0);

inline CodableColor codable(const QColor& color) {
    return CodableColor{color.redF(), color.greenF(), color.blueF(), color.alphaF()};
}

// A text panel of `text` filling a view of `size`, with no shadow to blur its edges.
inline Panel sizedTextPanel(const QString& text, const QSize& size = QSize(200, 100)) {
    Panel panel = Panel::makeDefault(PanelType::Text);
    panel.textTemplate = text;
    panel.frame = PanelFrame{0, 0, double(size.width()), double(size.height())};
    panel.style.showShadow = false;
    return panel;
}

inline QString writeImage(const QTemporaryDir& folder, const QImage& image) {
    const QString path = folder.filePath(QStringLiteral("picture.png"));
    QImageWriter writer(path, "png");
    writer.write(image);
    return path;
}

// A panel's runner on the fake machine and the view that draws it, whose web views are
// plain green widgets. A base of the test class, beside QObject: init() calls resetView(),
// cleanup() releaseView().
class ContentViewFixture : protected RunnerFixture {
protected:
    void resetView() {
        resetMachine();
        m_viewsMade = 0;
    }

    void releaseView() {
        m_view.reset();
        m_runner.reset();
    }

    // A started runner for `panel` and a view of it at the panel's size.
    PanelContentView& show(const Panel& panel, bool start = true) {
        m_runner = std::make_unique<PanelRunner>(panel, services());
        if (start)
            startAndLoad(panel);
        m_view = std::make_unique<PanelContentView>(*m_runner);
        m_view->setWebViewFactory([this](WebPage*, QWidget* parent) {
            ++m_viewsMade;
            auto* view = new QWidget(parent);
            view->setAutoFillBackground(true);
            QPalette palette = view->palette();
            palette.setColor(QPalette::Window, kGreen);
            view->setPalette(palette);
            return view;
        });
        m_view->resize(int(panel.frame.width), int(panel.frame.height));
        m_view->setPanel(panel);
        return *m_view;
    }

    QImage renderView(double ratio) { return render(*m_view, ratio); }

    // An image panel's file is read in the background: this waits until it has been, so
    // that the view shows what was read.
    void startAndLoad(const Panel& panel) {
        QSignalSpy loaded(m_runner.get(), &PanelRunner::imageChanged);
        m_runner->start();
        if (panel.type == PanelType::Image && !panel.imageSource.isEmpty() && loaded.isEmpty())
            loaded.wait(10000);
    }

    std::unique_ptr<PanelRunner> m_runner;
    std::unique_ptr<PanelContentView> m_view;
    int m_viewsMade = 0;
};

} // namespace corkwheel::test

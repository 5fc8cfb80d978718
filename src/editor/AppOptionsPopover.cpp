// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/AppOptionsPopover.h"

#include "editor/SecondaryText.h"
#include "settings/AppSettings.h"
#include "settings/StartAtLogin.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace corkwheel {

namespace {

constexpr int kPadding = 16;
constexpr int kSpacing = 10;

QLabel* headline(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

// Wraps at kNoteWidth, which sets the popover's width, or at the width of the widest of
// `others` when a translation makes one wider: the note is asked for its height at the width
// of the popover's column, which must then be its own.
QLabel* note(const QString& text, const QList<QWidget*>& others, QWidget* parent) {
    QLabel* label = SecondaryText::note(text, parent);
    label->setObjectName(QStringLiteral("appOptionsNote"));
    int width = AppOptionsPopover::kNoteWidth;
    for (const QWidget* other : others)
        width = std::max(width, other->sizeHint().width());
    label->setFixedWidth(width);
    return label;
}

} // namespace

AppOptionsPopover::AppOptionsPopover(AppSettings& settings, QWidget* parent)
    : QFrame(parent, Qt::Popup), m_settings(settings) {
    setObjectName(QStringLiteral("appOptionsPopover"));
    setAccessibleName(tr("App Options"));
    setFrameShape(QFrame::StyledPanel);
    m_dockIcon = new QCheckBox(tr("Show Dock icon"), this);
    m_dockIcon->setObjectName(QStringLiteral("showDockIconBox"));
    m_menuBarItem = new QCheckBox(tr("Show menu bar item"), this);
    m_menuBarItem->setObjectName(QStringLiteral("showMenuBarItemBox"));
    m_startAtLogin = new QCheckBox(tr("Start at login"), this);
    m_startAtLogin->setObjectName(QStringLiteral("startAtLoginBox"));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kPadding, kPadding, kPadding, kPadding);
    layout->setSpacing(kSpacing);
    QLabel* appearance = headline(tr("Appearance"), this);
    layout->addWidget(appearance);
    layout->addWidget(m_dockIcon);
    layout->addWidget(m_menuBarItem);
    layout->addWidget(note(tr("At least one stays visible so you can always reach Settings."),
                           {appearance, m_dockIcon, m_menuBarItem, m_startAtLogin}, this));
    layout->addWidget(m_startAtLogin);

    showSettings();
    connect(m_dockIcon, &QCheckBox::toggled, &m_settings, &AppSettings::setShowDockIcon);
    connect(m_menuBarItem, &QCheckBox::toggled, &m_settings, &AppSettings::setShowMenuBarItem);
    connect(m_startAtLogin, &QCheckBox::toggled, this, &AppOptionsPopover::setStartAtLogin);
    connect(&m_settings, &AppSettings::showDockIconChanged, this, &AppOptionsPopover::showSettings);
    connect(&m_settings, &AppSettings::showMenuBarItemChanged, this,
            &AppOptionsPopover::showSettings);
}

void AppOptionsPopover::showSettings() {
    const QSignalBlocker dockBlocker(m_dockIcon);
    const QSignalBlocker menuBlocker(m_menuBarItem);
    m_dockIcon->setChecked(m_settings.showDockIcon());
    m_menuBarItem->setChecked(m_settings.showMenuBarItem());
}

// The autostart entry is the only record of the option, and the user may remove it by
// hand, so it is read again whenever the options are shown.
void AppOptionsPopover::showStartAtLogin() {
    const QSignalBlocker blocker(m_startAtLogin);
    m_startAtLogin->setChecked(StartAtLogin::isEnabled());
}

void AppOptionsPopover::setStartAtLogin(bool enabled) {
    StartAtLogin::setEnabled(enabled, QCoreApplication::applicationFilePath());
    showStartAtLogin();
}

void AppOptionsPopover::showEvent(QShowEvent* event) {
    showStartAtLogin();
    QFrame::showEvent(event);
}

// The keyboard goes into the popup with it, to its first option; Escape closes it and gives
// the keyboard back to where it was.
void AppOptionsPopover::popUp(QWidget* anchor) {
    m_dockIcon->setFocus(Qt::PopupFocusReason);
    adjustSize();
    QPoint at = anchor->mapToGlobal(QPoint(0, anchor->height()));
    at.rx() += (anchor->width() - width()) / 2;
    move(at);
    show();
}

} // namespace corkwheel

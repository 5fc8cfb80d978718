// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/webengine/PanelWebProfile.h"

#include <QCoreApplication>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

namespace corkwheel::PanelWebProfile {

namespace {

// Qt sets a profile up in its folders as soon as it is made: pointing it elsewhere after
// that would leave its first files behind, so the profile keeps Qt's folders.
QWebEngineProfile* make() {
    auto* profile =
        new QWebEngineProfile(QStringLiteral("webpage-panels"), QCoreApplication::instance());
    QWebEngineSettings* settings = profile->settings();
    // A page opened from a file may still show the files it names, but not read them.
    settings->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, false);
    settings->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, false);
    settings->setAttribute(QWebEngineSettings::FullScreenSupportEnabled, false);
    settings->setAttribute(QWebEngineSettings::ScreenCaptureEnabled, false);
    return profile;
}

} // namespace

QWebEngineProfile* shared() {
    static QWebEngineProfile* const profile = make();
    return profile;
}

} // namespace corkwheel::PanelWebProfile

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QObject;
class QString;

namespace corkwheel {

class WebEngineBackend;
class WebPage;

// Finds and loads the web engine plugin the first time a web page is wanted.
namespace WebEngineLoader {

// The plugin's backend, or null when the plugin is not installed or does not load.
WebEngineBackend* backend();

// The backend of the plugin at `path`; null when it does not load.
WebEngineBackend* backendAt(const QString& path);

// A new page from the backend; null without one.
WebPage* createPage(QObject* parent);

} // namespace WebEngineLoader

} // namespace corkwheel

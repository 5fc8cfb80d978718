#include "engine/WebEngineLoader.h"

#include "engine/WebEngineBackend.h"

#include <QCoreApplication>
#include <QDir>
#include <QPluginLoader>

namespace corkwheel::WebEngineLoader {

namespace {

// The plugin sits in lib/corkwheel beside the bin folder of the executable, both when
// installed and in the build tree.
QString pluginPath() {
    return QDir(QCoreApplication::applicationDirPath())
        .absoluteFilePath(QStringLiteral("../" CORKWHEEL_PLUGIN_SUBDIR "/corkwheel-webengine"));
}

} // namespace

WebEngineBackend* backendAt(const QString& path) {
    QPluginLoader loader(path);
    return qobject_cast<WebEngineBackend*>(loader.instance());
}

WebEngineBackend* backend() {
    static WebEngineBackend* const loaded = backendAt(pluginPath());
    return loaded;
}

WebPage* createPage(QObject* parent) {
    WebEngineBackend* engine = backend();
    return engine ? engine->createPage(parent) : nullptr;
}

QWidget* createView(WebPage* page, QWidget* parent) {
    WebEngineBackend* engine = backend();
    return engine ? engine->createView(page, parent) : nullptr;
}

} // namespace corkwheel::WebEngineLoader

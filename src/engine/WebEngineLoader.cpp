// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/WebEngineLoader.h"

#include "engine/WebEngineBackend.h"

#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QOpenGLContext>
#include <QPluginLoader>

// Exported by Qt GUI for the web engine; not in its public headers.
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);

namespace corkwheel::WebEngineLoader {

namespace {

// The web engine draws through an OpenGL context shared with the application's. Qt makes
// one at start-up when asked to (Qt::AA_ShareOpenGLContexts), but that loads the OpenGL
// driver, tens of megabytes, into every Corkwheel, webpage panels or not. Nothing else in
// Corkwheel uses OpenGL, so making the shared context just before the web engine loads
// serves it just as well. The web engine also reports its set-up on the console, which
// Corkwheel does not.
void provideSharedOpenGLContext() {
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext.info=false"));
    if (qt_gl_global_share_context() || !QCoreApplication::instance())
        return;
    auto* context = new QOpenGLContext(QCoreApplication::instance());
    if (!context->create()) {
        delete context;
        return;
    }
    qt_gl_set_global_share_context(context);
}

// The plugin sits in lib/corkwheel beside the bin folder of the executable, both when
// installed and in the build tree.
QString pluginPath() {
    return QDir(QCoreApplication::applicationDirPath())
        .absoluteFilePath(QStringLiteral("../" CORKWHEEL_PLUGIN_SUBDIR "/corkwheel-webengine"));
}

} // namespace

WebEngineBackend* backendAt(const QString& path) {
    provideSharedOpenGLContext();
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

} // namespace corkwheel::WebEngineLoader

// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/FontFaces.h"

#include <fontconfig/fontconfig.h>

#include <QSet>

#include <memory>

namespace corkwheel::FontFaces {

namespace {

struct PatternDeleter {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
struct ObjectSetDeleter {
    void operator()(FcObjectSet* objects) const { FcObjectSetDestroy(objects); }
};
struct FontSetDeleter {
    void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
};

QString stringOf(FcPattern* font, const char* object) {
    FcChar8* value = nullptr;
    if (FcPatternGetString(font, object, 0, &value) != FcResultMatch || value == nullptr)
        return {};
    return QString::fromUtf8(reinterpret_cast<const char*>(value));
}

// A variable font is listed once as a whole, besides its named instances; the whole has no
// face of its own to offer.
bool isWholeVariableFont(FcPattern* font) {
    FcBool variable = FcFalse;
    return FcPatternGetBool(font, FC_VARIABLE, 0, &variable) == FcResultMatch && variable;
}

// The faces that match `pattern`, each PostScript name once. fontconfig lists a face once
// per file that holds it (an OpenType and a Type 1 copy, say); Qt picks among those itself.
QList<Face> facesMatching(FcPattern* pattern) {
    const std::unique_ptr<FcObjectSet, ObjectSetDeleter> objects(
        FcObjectSetBuild(FC_POSTSCRIPT_NAME, FC_FAMILY, FC_STYLE, FC_VARIABLE, nullptr));
    const std::unique_ptr<FcFontSet, FontSetDeleter> fonts(
        FcFontList(nullptr, pattern, objects.get()));
    QList<Face> faces;
    if (!fonts)
        return faces;
    QSet<QString> seen;
    for (int i = 0; i < fonts->nfont; ++i) {
        FcPattern* font = fonts->fonts[i];
        Face face{stringOf(font, FC_POSTSCRIPT_NAME), stringOf(font, FC_FAMILY),
                  stringOf(font, FC_STYLE)};
        if (face.postScriptName.isEmpty() || face.family.isEmpty() || isWholeVariableFont(font) ||
            seen.contains(face.postScriptName))
            continue;
        seen.insert(face.postScriptName);
        faces.append(std::move(face));
    }
    return faces;
}

} // namespace

QList<Face> installed() {
    const std::unique_ptr<FcPattern, PatternDeleter> any(FcPatternCreate());
    return facesMatching(any.get());
}

std::optional<Face> named(const QString& postScriptName) {
    if (postScriptName.isEmpty())
        return std::nullopt;
    const std::unique_ptr<FcPattern, PatternDeleter> pattern(FcPatternCreate());
    const QByteArray name = postScriptName.toUtf8();
    FcPatternAddString(pattern.get(), FC_POSTSCRIPT_NAME,
                       reinterpret_cast<const FcChar8*>(name.constData()));
    // fontconfig matches names ignoring case; the picker and the document do not.
    for (Face& face : facesMatching(pattern.get())) {
        if (face.postScriptName == postScriptName)
            return std::move(face);
    }
    return std::nullopt;
}

} // namespace corkwheel::FontFaces

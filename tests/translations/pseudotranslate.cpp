// SPDX-License-Identifier: GPL-3.0-or-later

// pseudotranslate TEMPLATE OUTPUT: writes the pseudo-translation of a template of texts, as
// translators' tools make one to try a program's layouts before any language exists. Every
// text is wrapped in "[!! " and " !!]" and made longer by about two fifths, as many languages
// make English texts; "%1", "%n" and "&" shortcut marks are kept as they are. The catalogue
// is English in its plural rules, so that each text that shows a count has two forms.

#include <QCoreApplication>
#include <QFile>
#include <QList>
#include <QString>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <cmath>
#include <cstdio>
#include <optional>

namespace {

struct Message {
    QString source;
    QString comment;
    QString extraComment;
    bool numerus = false;
};

struct Context {
    QString name;
    QList<Message> messages;
};

QString pseudo(const QString& text) {
    const auto extra = static_cast<qsizetype>(std::ceil(text.size() * 0.4));
    return QStringLiteral("[!! ") + text + QString(extra, u'~') + QStringLiteral(" !!]");
}

std::optional<QList<Context>> read(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QXmlStreamReader xml(&file);
    QList<Context> contexts;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto name = xml.name();
        if (name == u"context") {
            contexts.append(Context());
        } else if (name == u"name" && !contexts.isEmpty()) {
            contexts.last().name = xml.readElementText();
        } else if (name == u"message" && !contexts.isEmpty()) {
            Message message;
            message.numerus = xml.attributes().value(QStringLiteral("numerus")) == u"yes";
            contexts.last().messages.append(message);
        } else if (!contexts.isEmpty() && !contexts.last().messages.isEmpty()) {
            Message& message = contexts.last().messages.last();
            if (name == u"source")
                message.source = xml.readElementText();
            else if (name == u"comment")
                message.comment = xml.readElementText();
            else if (name == u"extracomment")
                message.extraComment = xml.readElementText();
        }
    }
    if (xml.hasError())
        return std::nullopt;
    return contexts;
}

bool write(const QList<Context>& contexts, const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeDTD(QStringLiteral("<!DOCTYPE TS>"));
    xml.writeStartElement(QStringLiteral("TS"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("2.1"));
    xml.writeAttribute(QStringLiteral("language"), QStringLiteral("en"));
    xml.writeAttribute(QStringLiteral("sourcelanguage"), QStringLiteral("en"));
    for (const Context& context : contexts) {
        xml.writeStartElement(QStringLiteral("context"));
        xml.writeTextElement(QStringLiteral("name"), context.name);
        for (const Message& message : context.messages) {
            xml.writeStartElement(QStringLiteral("message"));
            if (message.numerus)
                xml.writeAttribute(QStringLiteral("numerus"), QStringLiteral("yes"));
            xml.writeTextElement(QStringLiteral("source"), message.source);
            if (!message.comment.isEmpty())
                xml.writeTextElement(QStringLiteral("comment"), message.comment);
            if (!message.extraComment.isEmpty())
                xml.writeTextElement(QStringLiteral("extracomment"), message.extraComment);
            if (message.numerus) {
                xml.writeStartElement(QStringLiteral("translation"));
                // One form for one, one for any other count.
                xml.writeTextElement(QStringLiteral("numerusform"), pseudo(message.source));
                xml.writeTextElement(QStringLiteral("numerusform"), pseudo(message.source));
                xml.writeEndElement();
            } else {
                xml.writeTextElement(QStringLiteral("translation"), pseudo(message.source));
            }
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndDocument();
    return file.flush() && !xml.hasError();
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: pseudotranslate TEMPLATE OUTPUT\n", stderr);
        return 2;
    }
    const auto contexts = read(arguments.at(1));
    if (!contexts || contexts->isEmpty()) {
        std::fprintf(stderr, "pseudotranslate: cannot read the texts of %s\n",
                     qPrintable(arguments.at(1)));
        return 1;
    }
    if (!write(*contexts, arguments.at(2))) {
        std::fprintf(stderr, "pseudotranslate: cannot write %s\n", qPrintable(arguments.at(2)));
        return 1;
    }
    return 0;
}

// SPDX-License-Identifier: GPL-3.0-or-later

// What coloured command output costs: parsing a mebibyte of it (the most a command's
// output keeps) into text and runs, and drawing a panel of it, beside the same text
// without colours.
//
//   QT_QPA_PLATFORM=offscreen build/bench/bench_terminaltext

#include "BenchTimer.h"

#include "engine/TerminalText.h"
#include "model/Panel.h"
#include "render/TextBody.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

using namespace corkwheel;

namespace {

constexpr qsizetype kMebibyte = 1024 * 1024;
const QSize kPanelSize(480, 320);

// Lines like those of `ls -l --color=always`: a colour per file name, a reset after it.
QString colouredOutput() {
    static const char* const kColours[] = {"01;34", "01;32",    "01;36",
                                           "00;31", "38;5;208", "38;2;120;200;80"};
    QString output;
    for (int line = 0; output.size() < kMebibyte; ++line) {
        output +=
            QStringLiteral("-rw-r--r-- 1 ann ann %1 Nov 24 10:%2 \033[%3mfile-%4.txt\033[0m\n")
                .arg(line * 37 % 100000, 6)
                .arg(line % 60, 2, 10, QLatin1Char('0'))
                .arg(QLatin1String(kColours[line % 6]))
                .arg(line);
    }
    output.truncate(kMebibyte);
    return output;
}

void drawPanel(const StyledText& text) {
    QImage image(kPanelSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    TextBody::paint(painter, QRectF(QPointF(), kPanelSize), text.text, PanelStyle{}, text.runs);
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QString output = colouredOutput();
    StyledText parsed;
    bench::measure("parse 1 MiB of coloured output", 50,
                   [&] { parsed = TerminalText::parse(output); });
    std::printf("  %lld characters of text, %lld runs\n",
                static_cast<long long>(parsed.text.size()),
                static_cast<long long>(parsed.runs.size()));
    const StyledText plain{parsed.text, {}};
    bench::measure("parse 1 MiB of plain output", 50, [&] { TerminalText::parse(plain.text); });
    bench::measure("draw a 480x320 panel of it, coloured", 200, [&] { drawPanel(parsed); });
    bench::measure("draw a 480x320 panel of it, plain", 200, [&] { drawPanel(plain); });
    return 0;
}

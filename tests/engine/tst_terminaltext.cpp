// SPDX-License-Identifier: GPL-3.0-or-later

// What a terminal would show of a program's output: SGR colours and attributes as runs,
// every other escape and control sequence gone.

#include "engine/TerminalText.h"

#include <QTest>

using namespace corkwheel;

namespace {

// Output written with "\033" for ESC, as in a shell's printf.
StyledText parse(const QByteArray& output) {
    return TerminalText::parse(QString::fromUtf8(output));
}

TextStyle foreground(TerminalColor color) {
    TextStyle style;
    style.foreground = color;
    return style;
}

TextStyle background(TerminalColor color) {
    TextStyle style;
    style.background = color;
    return style;
}

QList<StyledRun> oneRun(qsizetype start, qsizetype length, const TextStyle& style) {
    return {StyledRun{start, length, style}};
}

// The one run of `output`, which styles its word "word".
StyledRun onlyRun(const QByteArray& output) {
    const StyledText text = parse(output);
    if (text.runs.size() != 1)
        return {};
    return text.runs.first();
}

} // namespace

class TerminalTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void plainTextHasNoRuns() {
        const StyledText text = parse("load 0.42\nup 3 days");
        QCOMPARE(text.text, QStringLiteral("load 0.42\nup 3 days"));
        QVERIFY(text.runs.isEmpty());
    }

    void resetEndsTheRun() {
        const StyledText text = parse("\033[31mred\033[0m plain");
        QCOMPARE(text.text, QStringLiteral("red plain"));
        QCOMPARE(text.runs, oneRun(0, 3, foreground(TerminalColor::indexed(1))));
        // "ESC [ m" resets as "ESC [ 0 m" does.
        QCOMPARE(parse("\033[1mbold\033[m plain").runs.first().length, 4);
    }

    void attributesAndTheirResets_data() {
        QTest::addColumn<QByteArray>("on");
        QTest::addColumn<QByteArray>("off");
        QTest::addColumn<bool TextStyle::*>("attribute");
        QTest::newRow("bold") << QByteArray("1") << QByteArray("22") << &TextStyle::bold;
        QTest::newRow("dim") << QByteArray("2") << QByteArray("22") << &TextStyle::dim;
        QTest::newRow("italic") << QByteArray("3") << QByteArray("23") << &TextStyle::italic;
        QTest::newRow("underline") << QByteArray("4") << QByteArray("24") << &TextStyle::underline;
        QTest::newRow("reverse") << QByteArray("7") << QByteArray("27") << &TextStyle::reverse;
        QTest::newRow("strike-through")
            << QByteArray("9") << QByteArray("29") << &TextStyle::strikeOut;
    }

    void attributesAndTheirResets() {
        QFETCH(QByteArray, on);
        QFETCH(QByteArray, off);
        QFETCH(bool TextStyle::*, attribute);
        const StyledText text = parse("\033[" + on + "mword\033[" + off + "m after");
        QCOMPARE(text.text, QStringLiteral("word after"));
        QCOMPARE(text.runs.size(), 1);
        TextStyle expected;
        expected.*attribute = true;
        QCOMPARE(text.runs.first(), (StyledRun{0, 4, expected}));
    }

    void baseColours_data() {
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("isForeground");
        QTest::addColumn<int>("index");
        for (int i = 0; i < 8; ++i) {
            QTest::addRow("foreground %d", 30 + i) << 30 + i << true << i;
            QTest::addRow("bright foreground %d", 90 + i) << 90 + i << true << 8 + i;
            QTest::addRow("background %d", 40 + i) << 40 + i << false << i;
            QTest::addRow("bright background %d", 100 + i) << 100 + i << false << 8 + i;
        }
    }

    void baseColours() {
        QFETCH(int, code);
        QFETCH(bool, isForeground);
        QFETCH(int, index);
        const TerminalColor color = TerminalColor::indexed(index);
        const StyledRun run = onlyRun("\033[" + QByteArray::number(code) + "mword");
        QCOMPARE(run, (StyledRun{0, 4, isForeground ? foreground(color) : background(color)}));
    }

    void colours256() {
        QCOMPARE(onlyRun("\033[38;5;33mword").style, foreground(TerminalColor::indexed(33)));
        QCOMPARE(onlyRun("\033[48;5;240mword").style, background(TerminalColor::indexed(240)));
    }

    void colours24Bit() {
        QCOMPARE(onlyRun("\033[38;2;255;128;0mword").style,
                 foreground(TerminalColor::rgb(255, 128, 0)));
        QCOMPARE(onlyRun("\033[48;2;0;128;0mword").style,
                 background(TerminalColor::rgb(0, 128, 0)));
    }

    void defaultColoursGoBackToThePanelsOwn() {
        const StyledText text = parse("\033[1;31;42mab\033[39mcd\033[49mef");
        QCOMPARE(text.text, QStringLiteral("abcdef"));
        TextStyle style;
        style.bold = true;
        style.foreground = TerminalColor::indexed(1);
        style.background = TerminalColor::indexed(2);
        TextStyle withoutForeground = style;
        withoutForeground.foreground = {};
        TextStyle boldOnly = withoutForeground;
        boldOnly.background = {};
        QCOMPARE(text.runs,
                 (QList<StyledRun>{{0, 2, style}, {2, 2, withoutForeground}, {4, 2, boldOnly}}));
    }

    void sameStyleTwiceIsOneRun() {
        const StyledText once = parse("\033[32mgreen text\033[0m");
        const StyledText twice = parse("\033[32mgreen \033[32mtext\033[0m\033[0m");
        QCOMPARE(twice, once);
    }

    void cursorAndEraseSequencesAreRemoved() {
        const StyledText text = parse("\033[2J\033[H\033[10;5Hone\033[2K\033[3Atwo\033[?25l\033[K");
        QCOMPARE(text.text, QStringLiteral("onetwo"));
        QVERIFY(text.runs.isEmpty());
    }

    void titlesAreRemoved() {
        QCOMPARE(parse("\033]0;my title\x07shown").text, QStringLiteral("shown"));
        QCOMPARE(parse("\033]2;my title\033\\shown").text, QStringLiteral("shown"));
    }

    void hyperlinksKeepTheirText() {
        const QByteArray link = "\033]8;;https://example.org/\033\\the site\033]8;;\033\\ and more";
        QCOMPARE(parse(link).text, QStringLiteral("the site and more"));
    }

    void characterSetSelectionIsRemoved() {
        QCOMPARE(parse("\033(Bone\033)0two\033(0three").text, QStringLiteral("onetwothree"));
    }

    void loneEscapesAreRemoved() {
        QCOMPARE(parse("a\033"
                       "7b\033"
                       "=c\033")
                     .text,
                 QStringLiteral("abc"));
        QCOMPARE(parse("a\033\nb").text, QStringLiteral("a\nb"));
    }

    void carriageReturnKeepsWhatFollowsIt() {
        QCOMPARE(parse("first\n 10%\r 50%\r100% done\nlast").text,
                 QStringLiteral("first\n100% done\nlast"));
        const StyledText coloured = parse("\033[31mold text\r\033[32mnew\033[0m");
        QCOMPARE(coloured.text, QStringLiteral("new"));
        QCOMPARE(coloured.runs, oneRun(0, 3, foreground(TerminalColor::indexed(2))));
    }

    void windowsLineEndsKeepTheirLines() {
        QCOMPARE(parse("one\r\ntwo\r\n").text, QStringLiteral("one\ntwo"));
    }

    void tabsExpandToEightColumnStops() {
        QCOMPARE(parse("a\tb\nabcdefgh\tc\nabc\t\td").text,
                 QStringLiteral("a       b\nabcdefgh        c\nabc             d"));
    }

    void otherControlCharactersAreDropped() {
        QCOMPARE(parse("be\x07ll\bback\x0c\x7f"
                       "feed\x01\xc2\x9b")
                     .text,
                 QStringLiteral("bellbackfeed"));
    }

    void outputOfOnlyEscapesIsEmpty() {
        const StyledText text = parse("\033[31m\033[0m \n\033]0;title\x07");
        QVERIFY(text.text.isEmpty());
        QVERIFY(text.runs.isEmpty());
    }

    void surroundingWhiteSpaceIsTrimmedWithTheRuns() {
        const StyledText text = parse("  \033[31m  red  \033[0m\n\n");
        QCOMPARE(text.text, QStringLiteral("red"));
        QCOMPARE(text.runs, oneRun(0, 3, foreground(TerminalColor::indexed(1))));
    }

    void spacesThatShowAreKept() {
        const StyledText bar = parse("\033[48;5;196m    \033[48;5;46m    \033[0m\n");
        QCOMPARE(bar.text, QStringLiteral("        "));
        QCOMPARE(bar.runs.size(), 2);
        QCOMPARE(parse("  \033[7m  \033[0m  x").text, QStringLiteral("    x"));
    }

    void malformedColoursAreIgnored_data() {
        QTest::addColumn<QByteArray>("sequence");
        QTest::newRow("256 without a number") << QByteArray("[38;5m");
        QTest::newRow("256 out of range") << QByteArray("[38;5;300m");
        QTest::newRow("24-bit cut short") << QByteArray("[38;2;10;20m");
        QTest::newRow("24-bit out of range") << QByteArray("[48;2;10;20;999m");
        QTest::newRow("unknown kind") << QByteArray("[38;7;1m");
        QTest::newRow("huge parameter") << QByteArray("[99999999999999999999m");
        QTest::newRow("private marker") << QByteArray("[?31m");
        QTest::newRow("intermediate") << QByteArray("[31 m");
    }

    void malformedColoursAreIgnored() {
        QFETCH(QByteArray, sequence);
        const StyledText text = parse("a\033" + sequence + "word");
        QCOMPARE(text.text, QStringLiteral("aword"));
        QVERIFY(text.runs.isEmpty());
    }

    void truncatedSequencesAtTheEndAreDropped_data() {
        QTest::addColumn<QByteArray>("tail");
        QTest::newRow("ESC") << QByteArray("\033");
        QTest::newRow("ESC [") << QByteArray("\033[");
        QTest::newRow("parameters") << QByteArray("\033[38;2;255;1");
        QTest::newRow("title") << QByteArray("\033]0;unfinished title");
        QTest::newRow("character set") << QByteArray("\033(");
    }

    void truncatedSequencesAtTheEndAreDropped() {
        QFETCH(QByteArray, tail);
        QCOMPARE(parse("shown" + tail).text, QStringLiteral("shown"));
    }

    void brokenSequenceLetsTheNextCharacterThrough() {
        QCOMPARE(parse("a\033[31\nb").text, QStringLiteral("a\nb"));
    }

    // The output a command keeps is cut at a size limit, which may fall inside a sequence:
    // whatever is kept shows no piece of it.
    void outputCutInsideASequenceShowsNoPieceOfIt() {
        const QByteArray full = "one \033[1;38;2;10;20;30mtwo\033]8;;http://x/\033\\ three\033[0m";
        const QString plain = parse(full).text;
        QCOMPARE(plain, QStringLiteral("one two three"));
        for (qsizetype cut = 1; cut < full.size(); ++cut) {
            const QString shown = parse(full.left(cut)).text;
            QVERIFY2(plain.startsWith(shown), qPrintable(shown));
        }
    }
};

QTEST_GUILESS_MAIN(TerminalTextTest)
#include "tst_terminaltext.moc"

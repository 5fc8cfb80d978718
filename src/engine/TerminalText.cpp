// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/TerminalText.h"

#include <QVarLengthArray>

#include <algorithm>

namespace corkwheel::TerminalText {

namespace {

constexpr char16_t kEscape = 0x1b;
constexpr char16_t kBell = 0x07;
constexpr char16_t kStringTerminator = 0x9c;
constexpr qsizetype kTabStop = 8;
// More parameters than any real SGR sequence has; the rest are ignored.
constexpr qsizetype kMaxParameters = 64;
// Large enough for every meaningful parameter, small enough never to overflow.
constexpr int kMaxParameterValue = 100'000;

bool isControl(char16_t c) {
    return c < 0x20 || c == 0x7f || (c >= 0x80 && c < 0xa0);
}

bool inRange(char16_t c, char16_t low, char16_t high) {
    return c >= low && c <= high;
}

using Parameters = QVarLengthArray<int, 16>;

Parameters parameters(QStringView text) {
    Parameters result;
    int value = 0;
    for (const QChar c : text) {
        if (c == u';' || c == u':') {
            if (result.size() < kMaxParameters)
                result.append(value);
            value = 0;
        } else if (c.isDigit()) {
            value = std::min(value * 10 + c.digitValue(), kMaxParameterValue);
        }
    }
    if (result.size() < kMaxParameters)
        result.append(value);
    return result;
}

bool isByte(int value) {
    return value >= 0 && value <= 255;
}

// The colour of 38 or 48 from parameter `i` on ("5;n" or "2;r;g;b"); `i` is left on the
// last parameter taken.
void extendedColor(const Parameters& p, qsizetype& i, TerminalColor& color) {
    if (i + 2 < p.size() && p[i + 1] == 5) {
        if (isByte(p[i + 2]))
            color = TerminalColor::indexed(p[i + 2]);
        i += 2;
    } else if (i + 4 < p.size() && p[i + 1] == 2) {
        if (isByte(p[i + 2]) && isByte(p[i + 3]) && isByte(p[i + 4]))
            color = TerminalColor::rgb(p[i + 2], p[i + 3], p[i + 4]);
        i += 4;
    } else {
        i = p.size();
    }
}

void applyAttribute(const Parameters& p, qsizetype& i, TextStyle& style) {
    const int code = p[i];
    if (code >= 30 && code <= 37)
        style.foreground = TerminalColor::indexed(code - 30);
    else if (code >= 90 && code <= 97)
        style.foreground = TerminalColor::indexed(code - 90 + 8);
    else if (code >= 40 && code <= 47)
        style.background = TerminalColor::indexed(code - 40);
    else if (code >= 100 && code <= 107)
        style.background = TerminalColor::indexed(code - 100 + 8);
    switch (code) {
    case 0:
        style = TextStyle{};
        break;
    case 1:
        style.bold = true;
        break;
    case 2:
        style.dim = true;
        break;
    case 3:
        style.italic = true;
        break;
    case 4:
        style.underline = true;
        break;
    case 7:
        style.reverse = true;
        break;
    case 9:
        style.strikeOut = true;
        break;
    case 22:
        style.bold = style.dim = false;
        break;
    case 23:
        style.italic = false;
        break;
    case 24:
        style.underline = false;
        break;
    case 27:
        style.reverse = false;
        break;
    case 29:
        style.strikeOut = false;
        break;
    case 38:
        extendedColor(p, i, style.foreground);
        break;
    case 39:
        style.foreground = {};
        break;
    case 48:
        extendedColor(p, i, style.background);
        break;
    case 49:
        style.background = {};
        break;
    default:
        break;
    }
}

class Parser {
public:
    explicit Parser(QStringView output) : m_in(output) { m_out.text.reserve(output.size()); }

    StyledText run() {
        qsizetype i = 0;
        while (i < m_in.size()) {
            const qsizetype plainEnd = endOfPlainText(i);
            if (plainEnd > i) {
                append(m_in.sliced(i, plainEnd - i));
                i = plainEnd;
            } else {
                i = control(i);
            }
        }
        trim();
        return std::move(m_out);
    }

private:
    qsizetype endOfPlainText(qsizetype i) const {
        while (i < m_in.size() && !isControl(m_in[i].unicode()))
            ++i;
        return i;
    }

    // Handles the control character at `i`, and the sequence it starts; returns where the
    // text goes on.
    qsizetype control(qsizetype i) {
        switch (m_in[i].unicode()) {
        case kEscape:
            return escape(i + 1);
        case u'\n':
            m_out.text.append(u'\n');
            m_lineStart = m_out.text.size();
            break;
        case u'\t':
            append(QString(kTabStop - (m_out.text.size() - m_lineStart) % kTabStop, u' '));
            break;
        case u'\r':
            carriageReturn(i);
            break;
        default:
            break;
        }
        return i + 1;
    }

    // `i` is just past an ESC.
    qsizetype escape(qsizetype i) {
        if (i >= m_in.size())
            return i;
        const char16_t c = m_in[i].unicode();
        if (c == u'[')
            return controlSequence(i + 1);
        if (c == u']' || c == u'P' || c == u'X' || c == u'^' || c == u'_')
            return controlString(i + 1);
        if (inRange(c, 0x20, 0x2f)) {
            // Character-set selection and the like: intermediates, then one final byte.
            while (i < m_in.size() && inRange(m_in[i].unicode(), 0x20, 0x2f))
                ++i;
            return i < m_in.size() && inRange(m_in[i].unicode(), 0x30, 0x7e) ? i + 1 : i;
        }
        // A two-character sequence; a lone ESC before anything else is dropped by itself.
        return inRange(c, 0x30, 0x7e) ? i + 1 : i;
    }

    // `i` is just past "ESC [". Only SGR (final byte "m", no private marker or
    // intermediates) has an effect; a sequence broken off by another character is dropped
    // and that character taken as text.
    qsizetype controlSequence(qsizetype i) {
        const qsizetype start = i;
        while (i < m_in.size() && inRange(m_in[i].unicode(), 0x30, 0x3f))
            ++i;
        const qsizetype parametersEnd = i;
        while (i < m_in.size() && inRange(m_in[i].unicode(), 0x20, 0x2f))
            ++i;
        if (i >= m_in.size() || !inRange(m_in[i].unicode(), 0x40, 0x7e))
            return i;
        const QStringView params = m_in.sliced(start, parametersEnd - start);
        const bool privateMarker = !params.isEmpty() && inRange(params[0].unicode(), 0x3c, 0x3f);
        if (m_in[i] == u'm' && parametersEnd == i && !privateMarker)
            selectGraphicRendition(params);
        return i + 1;
    }

    // `i` is just past the start of an OSC or another control string, which runs to BEL
    // or the string terminator; ESC before anything else ends it and starts a sequence.
    qsizetype controlString(qsizetype i) {
        for (; i < m_in.size(); ++i) {
            const char16_t c = m_in[i].unicode();
            if (c == kBell || c == kStringTerminator)
                return i + 1;
            if (c == kEscape)
                return i + 1 < m_in.size() && m_in[i + 1] == u'\\' ? i + 2 : i;
        }
        return i;
    }

    void selectGraphicRendition(QStringView text) {
        const Parameters p = parameters(text);
        for (qsizetype i = 0; i < p.size(); ++i)
            applyAttribute(p, i, m_style);
    }

    // What follows a carriage return overwrites the line, as the last state of a progress
    // line; one that ends a line (CR LF) or the output changes nothing.
    void carriageReturn(qsizetype i) {
        if (i + 1 >= m_in.size() || m_in[i + 1] == u'\n')
            return;
        cut(m_lineStart);
    }

    void append(QStringView text) {
        const qsizetype start = m_out.text.size();
        m_out.text.append(text);
        if (m_style.isPlain())
            return;
        if (!m_out.runs.isEmpty()) {
            StyledRun& last = m_out.runs.last();
            if (last.style == m_style && last.start + last.length == start) {
                last.length += text.size();
                return;
            }
        }
        m_out.runs.append(StyledRun{start, text.size(), m_style});
    }

    // Drops the text from `end` on, and the runs with it.
    void cut(qsizetype end) {
        m_out.text.truncate(end);
        while (!m_out.runs.isEmpty() && m_out.runs.last().start >= end)
            m_out.runs.removeLast();
        if (!m_out.runs.isEmpty()) {
            StyledRun& last = m_out.runs.last();
            last.length = std::min(last.length, end - last.start);
        }
    }

    // Leading and trailing white space goes, as from plain output, but for spaces that
    // show: on a background, reversed, underlined or struck through.
    void trim() {
        const QString& text = m_out.text;
        qsizetype end = text.size();
        while (end > 0 && text[end - 1].isSpace())
            --end;
        qsizetype lead = 0;
        while (lead < end && text[lead].isSpace())
            ++lead;
        for (const StyledRun& run : std::as_const(m_out.runs)) {
            if (showsOnSpace(run.style)) {
                lead = std::min(lead, run.start);
                end = std::max(end, run.start + run.length);
            }
        }
        cut(end);
        if (lead > 0)
            dropLeading(lead);
    }

    static bool showsOnSpace(const TextStyle& style) {
        return !style.background.isDefault() || style.reverse || style.underline || style.strikeOut;
    }

    void dropLeading(qsizetype lead) {
        m_out.text.remove(0, lead);
        QList<StyledRun> runs;
        for (StyledRun run : std::as_const(m_out.runs)) {
            const qsizetype runEnd = run.start + run.length - lead;
            run.start = std::max<qsizetype>(run.start - lead, 0);
            run.length = runEnd - run.start;
            if (run.length > 0)
                runs.append(run);
        }
        m_out.runs = runs;
    }

    QStringView m_in;
    StyledText m_out;
    TextStyle m_style;
    qsizetype m_lineStart = 0;
};

} // namespace

StyledText parse(QStringView output) {
    return Parser(output).run();
}

} // namespace corkwheel::TerminalText

// SPDX-License-Identifier: GPL-3.0-or-later

// The corkwheel binary on an X display of the test's own, showing a command whose output is
// coloured as a terminal would colour it.

#include "support/PanelFixtures.h"
#include "support/PrivateXServer.h"
#include "support/XDisplayTools.h"
#include "support/XWindowImage.h"

#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// The pixels of `image` within a few steps of `color` in every channel.
int pixelsNear(const QImage& image, QColor color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (std::abs(pixel.red() - color.red()) <= 12 &&
                std::abs(pixel.green() - color.green()) <= 12 &&
                std::abs(pixel.blue() - color.blue()) <= 12)
                ++count;
        }
    }
    return count;
}

} // namespace

class ColourOutputEndToEndTest : public QObject {
    Q_OBJECT

private:
    PrivateXServer m_server;

private Q_SLOTS:
    void initTestCase() {
        QVERIFY2(m_server.start(), "Xvfb did not start");
        qputenv("DISPLAY", m_server.display());
    }

    void shellPanelShowsThreeWordsInTheirColours() {
        Panel panel = Panel::makeDefault(PanelType::Shell);
        panel.name = QStringLiteral("Colours E2E");
        panel.frame = PanelFrame{20, 20, 480, 90};
        panel.style.fontSize = 28;
        panel.style.showShadow = false;
        panel.shellCommand = QStringLiteral(
            R"(printf '\033[31mred\033[0m \033[1;38;5;33mblue\033[0m \033[48;2;0;128;0mgreen\033[0m')");
        CorkwheelProcess corkwheel({panel});
        const WId window = shownWindowNamed(panel.name);
        QVERIFY(window);

        const QColor red(0xe0, 0x44, 0x3e);
        const QColor blue(0, 135, 255);
        const QColor green(0, 128, 0);
        QImage image;
        // The first picture may show "Running…" or come before the first paint.
        QTRY_VERIFY_WITH_TIMEOUT((image = windowImage(window), pixelsNear(image, green) > 500),
                                 kWait);
        QVERIFY2(pixelsNear(image, red) > 20, "no red word");
        QVERIFY2(pixelsNear(image, blue) > 20, "no blue word");
    }
};

QTEST_MAIN(ColourOutputEndToEndTest)
#include "tst_colouroutput_e2e.moc"

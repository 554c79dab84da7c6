// Texts on the pilot's own colours.

#include "ui/window/look.h"

#include <gtest/gtest.h>

#include "ui/controls/link_button.h"
#include "ui/window/qt_text.h"

namespace norvane {
namespace {

/// The colours of the pilot's three swatches: a menu bar's ground and its text, and the title
/// bars'.
constexpr std::int32_t colors[] = {0xFFFFFF, 0x000000, 0x804000, 0xDFDFDF, 0x808080, 0x7F7F00,
                                   0x0000FF, 0x00FF00, 0xFF0000, 0x00FFFF, 0xC0C0C0, 0x404040};

TEST(Look, Texts_are_read_on_every_colour_that_the_pilot_chooses) {
    for (const std::int32_t chosen : colors) {
        const QColor ground = Setting_Color(chosen);
        // The navigation, with each colour of its text.
        for (const std::int32_t text : colors) {
            const QColor wanted = Setting_Color(text);
            const QColor ink = Ink_On(ground, {wanted});
            EXPECT_GE(Contrast(ink, ground), least_contrast) << chosen << ' ' << text;
            EXPECT_EQ(ink == wanted, Contrast(wanted, ground) >= least_contrast);
        }
        EXPECT_GE(Contrast(Ink_On(ground), ground), easy_contrast) << chosen;
        // A link on a title bar, drawn.
        for (const bool enabled : {true, false}) {
            Link_Button link("MMMM");
            QPalette palette;
            palette.setColor(QPalette::Button, ground);
            palette.setColor(QPalette::Window, ground);
            link.setPalette(palette);
            link.setEnabled(enabled);
            link.resize(link.sizeHint());
            const QImage drawn = link.grab().toImage();
            double best = 1;
            for (int x = 0; x < drawn.width(); ++x) {
                for (int y = 0; y < drawn.height(); ++y)
                    best = std::max(best, Contrast(drawn.pixelColor(x, y), ground));
            }
            EXPECT_GE(best, enabled ? least_contrast : 2.0) << chosen << ' ' << enabled;
        }
    }
}

}  // namespace
}  // namespace norvane

#include "app/ui/VorelApp.h"

#include <QApplication>
#include <QProxyStyle>

namespace {

/// Buttons of dialogs without pictures, as those of the message boxes are.
class CPlainButtons : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* pOption, const QWidget* pWidget,
                  QStyleHintReturn* pReturn) const override {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons
                   ? 0
                   : QProxyStyle::styleHint(hint, pOption, pWidget, pReturn);
    }
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    // Owned by the application.
    QApplication::setStyle(new CPlainButtons);
    CVorelApp vorel;
    return vorel.Run(application.arguments().mid(1));
}

#include "app/ui/VorelApp.h"
#include "foundation/CodePage.h"

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>

#include <thread>

namespace {

constexpr int c_nExtension = 16;
constexpr int c_nFineness = 2;

/// The ">>" behind which a bar keeps what has no room.
QIcon MoreIcon() {
    QPixmap picture(QSize(c_nExtension, c_nExtension) * c_nFineness);
    picture.setDevicePixelRatio(c_nFineness);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QGuiApplication::palette().color(QPalette::ButtonText), 1.5));
    for (const qreal dLeft : {3.5, 8.5})
        painter.drawPolyline(QPolygonF({{dLeft, 4.5}, {dLeft + 3.5, 8}, {dLeft, 11.5}}));
    return QIcon(picture);
}

/// Buttons of dialogs without pictures, as those of the message boxes are. The style's own picture of ">>",
/// which each menu bar asks for, would be read by the toolkit's reader: see Pictures.
class CPlainStyle : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* pOption, const QWidget* pWidget,
                  QStyleHintReturn* pReturn) const override {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons
                   ? 0
                   : QProxyStyle::styleHint(hint, pOption, pWidget, pReturn);
    }
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* pOption,
                       const QWidget* pWidget) const override {
        return icon == SP_ToolBarHorizontalExtensionButton
                   ? MoreIcon()
                   : QProxyStyle::standardIcon(icon, pOption, pWidget);
    }
};

} // namespace

int main(int argc, char** argv) {
    // At a cold start the code page's tables come from the disk while the toolkit begins.
    const std::jthread tables(CodePage::Prepare);
    QApplication application(argc, argv);
    // Owned by the application.
    QApplication::setStyle(new CPlainStyle);
    CVorelApp vorel;
    return vorel.Run(application.arguments().mid(1));
}

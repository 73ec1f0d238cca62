#include "platform/ui/ColorPicker.h"

#include "platform/ui/DialogParts.h"

#include <QColorDialog>
#include <QEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QPointer>

namespace Torvane::Control::MFC {

namespace {

constexpr QSize c_swatch(28, 14);

/// As pages name colours: by a word or by digits, which old ones write without the "#".
QColor ColourOf(const QString& strText) {
    const QString strName = strText.trimmed();
    const QColor colour(strName);
    return colour.isValid() || strName.isEmpty() ? colour : QColor(u'#' + strName);
}

} // namespace

CColorPicker::CColorPicker(QWidget* pParent) : QPushButton(pParent) {
    setIconSize(c_swatch);
    connect(this, &QPushButton::clicked, this, &CColorPicker::Pick);
}

void CColorPicker::SetBuddy(QLineEdit& edit) {
    m_pBuddy = &edit;
    connect(&edit, &QLineEdit::textChanged, this, &CColorPicker::ShowColour);
    ShowColour();
}

std::optional<QColor> CColorPicker::Ask(const QColor& shown, QWidget* pParent) {
    // The toolkit's own shows all that it has at once; a desktop's may hide the half behind a button.
    auto* pDialog = new QColorDialog(shown.isValid() ? shown : QColor(Qt::black), pParent);
    pDialog->setObjectName(QStringLiteral("colourDialog"));
    pDialog->setOption(QColorDialog::DontUseNativeDialog);
    return DialogParts::Run(pDialog, &QColorDialog::selectedColor);
}

void CColorPicker::Pick() {
    const QPointer<CColorPicker> pThis(this);
    const auto chosen = Ask(ColourOf(m_pBuddy->text()), window());
    if (pThis && chosen)
        m_pBuddy->setText(chosen->name());
}

void CColorPicker::ShowColour() {
    const QColor colour = m_pBuddy ? ColourOf(m_pBuddy->text()) : QColor();
    QPixmap swatch(c_swatch * devicePixelRatioF());
    swatch.setDevicePixelRatio(devicePixelRatioF());
    swatch.fill(colour.isValid() ? colour : palette().color(QPalette::Base));
    QPainter painter(&swatch);
    painter.setPen(palette().color(QPalette::Mid));
    const QRect frame = QRect(QPoint(), c_swatch).adjusted(0, 0, -1, -1);
    painter.drawRect(frame);
    // No colour is not white.
    if (!colour.isValid())
        painter.drawLine(frame.bottomLeft(), frame.topRight());
    setIcon(swatch);
}

void CColorPicker::changeEvent(QEvent* pEvent) {
    QPushButton::changeEvent(pEvent);
    if (pEvent->type() == QEvent::PaletteChange)
        ShowColour();
}

} // namespace Torvane::Control::MFC

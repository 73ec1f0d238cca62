#include "platform/ui/DialogParts.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QRegularExpression>

namespace DialogParts {

QString NameOf(const QString& strLabel) {
    static const QRegularExpression s_dress(QStringLiteral("\\(&.\\)|&|：|\\.\\.\\.$"));
    return QString(strLabel).remove(s_dress);
}

void SetNames(QWidget* pControl, const char* pszName, const QString& strLabel) {
    pControl->setObjectName(QString::fromLatin1(pszName));
    pControl->setAccessibleName(NameOf(strLabel));
}

QLabel* LabelFor(const QString& strText, QWidget* pControl) {
    auto* pLabel = new QLabel(strText, pControl->parentWidget());
    pLabel->setBuddy(pControl);
    return pLabel;
}

QPlainTextEdit* ReadOnlyText(QWidget* pParent) {
    auto* pText = new QPlainTextEdit(pParent);
    pText->setReadOnly(true);
    pText->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    pText->setTabChangesFocus(true);
    QPalette palette = pText->palette();
    palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    pText->setPalette(palette);
    return pText;
}

} // namespace DialogParts

#include "platform/ui/DialogParts.h"

#include "platform/ui/Texts.h"

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
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

QString TipOf(const QString& strText) {
    return strText.isEmpty()
               ? QString()
               : QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(strText.toHtmlEscaped());
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

QPushButton* ButtonOfLetter(const QKeyEvent& key, std::initializer_list<QPushButton*> buttons) {
    if (key.modifiers() != Qt::AltModifier)
        return nullptr;
    for (QPushButton* pButton : buttons) {
        if (pButton->isVisible() && pButton->isEnabled() &&
            QKeySequence::mnemonic(pButton->text()) == QKeySequence(Qt::ALT | Qt::Key(key.key())))
            return pButton;
    }
    return nullptr;
}

QString TextOf(const QLineEdit& field) {
    QString strText = field.text();
    for (QChar& c : strText) {
        if (c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return strText;
}

QPushButton* AddOkAndCancel(QDialog& dialog, QBoxLayout& layout, EDefaultButton button) {
    auto* pBox = new QDialogButtonBox(&dialog);
    QPushButton* pOk =
        Named(pBox->addButton(UiTexts::c_strOk, QDialogButtonBox::AcceptRole), "ok", UiTexts::c_strOk);
    QPushButton* pCancel = Named(pBox->addButton(UiTexts::c_strCancel, QDialogButtonBox::RejectRole),
                                 "cancel", UiTexts::c_strCancel);
    QObject::connect(pBox, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(pBox, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout.addWidget(pBox);
    QPushButton* pDefault = button == EDefaultButton::Ok ? pOk : pCancel;
    pDefault->setDefault(true);
    return pDefault;
}

} // namespace DialogParts

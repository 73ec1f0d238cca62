#include "content/ui/TreeDialogs.h"

#include "content/Texts.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {

QDialogButtonBox* AddButtons(QDialog& dialog, QVBoxLayout& layout) {
    auto* pBox = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    pBox->button(QDialogButtonBox::Ok)->setText(ContentText::c_strOk);
    pBox->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("ok"));
    pBox->button(QDialogButtonBox::Cancel)->setText(ContentText::c_strCancel);
    pBox->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancel"));
    QObject::connect(pBox, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(pBox, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout.addWidget(pBox);
    return pBox;
}

} // namespace

bool ConfirmDeletion(const QString& strTitles, QWidget* pParent) {
    QDialog dialog(pParent);
    dialog.setObjectName(QStringLiteral("confirmDeletion"));
    dialog.setWindowTitle(ContentText::c_strConfirmDeleteTitle);
    auto* pLayout = new QVBoxLayout(&dialog);

    auto* pLine = new QHBoxLayout;
    auto* pPicture = new QLabel(&dialog);
    pPicture->setPixmap(dialog.style()->standardIcon(QStyle::SP_MessageBoxQuestion).pixmap(32, 32));
    pLine->addWidget(pPicture, 0, Qt::AlignTop);
    auto* pText = new QLabel(ContentText::c_strConfirmDelete, &dialog);
    pText->setWordWrap(true);
    pLine->addWidget(pText, 1);
    pLayout->addLayout(pLine);

    auto* pTitles = new QPlainTextEdit(strTitles, &dialog);
    pTitles->setObjectName(QStringLiteral("titles"));
    pTitles->setAccessibleName(ContentText::c_strConfirmDelete);
    pTitles->setReadOnly(true);
    pTitles->setTabChangesFocus(true);
    pLayout->addWidget(pTitles);

    QPushButton* pCancel = AddButtons(dialog, *pLayout)->button(QDialogButtonBox::Cancel);
    pCancel->setDefault(true);
    pCancel->setFocus();
    dialog.resize(420, 300);
    return dialog.exec() == QDialog::Accepted;
}

std::optional<QString> AskTitles(const QString& strPreset, QWidget* pParent) {
    QDialog dialog(pParent);
    dialog.setObjectName(QStringLiteral("askTitles"));
    dialog.setWindowTitle(ContentText::c_strTitleDialog);
    auto* pLayout = new QVBoxLayout(&dialog);
    auto* pPrompt = new QLabel(ContentText::c_strTitlePrompt, &dialog);
    pPrompt->setWordWrap(true);
    pLayout->addWidget(pPrompt);
    auto* pTitles = new QLineEdit(strPreset, &dialog);
    pTitles->setObjectName(QStringLiteral("titles"));
    pTitles->setAccessibleName(ContentText::c_strTitleDialog);
    // Room for several hundred titles of the greatest length.
    pTitles->setMaxLength(1 << 20);
    pTitles->selectAll();
    pPrompt->setBuddy(pTitles);
    pLayout->addWidget(pTitles);
    AddButtons(dialog, *pLayout);
    pTitles->setFocus();
    dialog.resize(460, dialog.sizeHint().height());
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return pTitles->text();
}

#include "app/ui/PreviewDialog.h"

#include "app/Texts.h"
#include "foundation/Paths.h"
#include "platform/base/NativePath.h"

#include <QLabel>
#include <QVBoxLayout>

CPreviewDialog::CPreviewDialog(const QString& strPicture, QWidget* pParent) : QDialog(pParent) {
    setObjectName(QStringLiteral("CPreviewDialog"));
    setWindowTitle(AppTexts::c_strOverallPreview);
    auto* pPicture = new QLabel(this);
    pPicture->setObjectName(QStringLiteral("picture"));
    pPicture->setAccessibleName(AppTexts::c_strOverallPreview);
    if (Torvane::File::IsFile(strPicture))
        pPicture->setPixmap(QPixmap(Platform::ToNative(strPicture)));
    pPicture->setMinimumSize(320, 240);
    pPicture->setAlignment(Qt::AlignCenter);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setSizeConstraint(QLayout::SetFixedSize);
    pLayout->addWidget(pPicture);
}

#include "app/ui/PreviewDialog.h"

#include "app/Texts.h"
#include "platform/ui/PicturePane.h"

#include <QVBoxLayout>

namespace {

/// The size that previews are made in, with the layout's margins.
constexpr QSize c_size(664, 504);

} // namespace

CPreviewDialog::CPreviewDialog(const QString& strPicture, QWidget* pParent) : QDialog(pParent) {
    setObjectName(QStringLiteral("CPreviewDialog"));
    setWindowTitle(AppTexts::c_strOverallPreview);
    auto* pPicture = new CPicturePane(this);
    pPicture->setObjectName(QStringLiteral("picture"));
    pPicture->setAccessibleName(AppTexts::c_strOverallPreview);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(12, 12, 12, 12);
    pLayout->addWidget(pPicture);
    resize(pParent ? c_size.boundedTo(pParent->size()) : c_size);
    pPicture->Load(strPicture);
}

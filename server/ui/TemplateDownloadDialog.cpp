#include "server/ui/TemplateDownloadDialog.h"

#include "platform/base/NativePath.h"
#include "server/Texts.h"
#include "server/ui/DialogParts.h"

#include <QGridLayout>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPixmap>

namespace {

constexpr QSize c_pictureSize(360, 270);

} // namespace

CTemplateDownloadDialog::CTemplateDownloadDialog(CTemplateDownload& download, QWidget* pParent)
    : QDialog(pParent), m_download(download), m_pList(new QListWidget), m_pPicture(new QLabel) {
    setObjectName(QStringLiteral("CTemplateDownloadDialog"));
    setWindowTitle(ServerText::c_strDownloadTitle);
    m_pList->setObjectName(QStringLiteral("templates"));
    m_pList->setAccessibleName(ServerText::c_strTemplateList);
    m_pPicture->setObjectName(QStringLiteral("preview"));
    m_pPicture->setAccessibleName(ServerText::c_strPreview);
    m_pPicture->setFrameShape(QFrame::StyledPanel);
    m_pPicture->setAlignment(Qt::AlignCenter);
    m_pPicture->setFixedSize(c_pictureSize);

    auto* pLayout = new QVBoxLayout(this);
    auto* pGrid = new QGridLayout;
    pGrid->addWidget(new QLabel(ServerText::c_strTemplateList), 0, 0);
    pGrid->addWidget(new QLabel(ServerText::c_strPreview), 0, 1);
    pGrid->addWidget(m_pList, 1, 0);
    pGrid->addWidget(m_pPicture, 1, 1);
    pLayout->addLayout(pGrid);
    QDialogButtonBox* pButtons = AddButtons(this, [this] { OnOk(); });

    if (m_download.GetNames().isEmpty()) {
        m_pList->addItem(ServerText::c_strNoTemplateEntry);
        pButtons->findChild<QPushButton*>(QStringLiteral("ok"))->setEnabled(false);
        return;
    }
    m_pList->addItems(m_download.GetNames());
    connect(m_pList, &QListWidget::currentRowChanged, this, [this] { ShowPreview(); });
    m_pList->setCurrentRow(0);
}

void CTemplateDownloadDialog::ShowPreview() {
    const QListWidgetItem* pItem = m_pList->currentItem();
    if (pItem == nullptr)
        return;
    const auto strFile = m_download.FetchPreview(pItem->text());
    // Read anew: a picture kept by its name would stay the last one.
    const QImage picture = strFile ? QImage(Platform::ToNative(*strFile)) : QImage();
    if (!picture.isNull())
        m_pPicture->setPixmap(
            QPixmap::fromImage(picture.scaled(c_pictureSize, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void CTemplateDownloadDialog::OnOk() {
    const QListWidgetItem* pItem = m_pList->currentItem();
    m_strChosen = pItem == nullptr ? QString() : pItem->text();
    if (m_download.CheckChoice(m_strChosen))
        accept();
}

bool DownloadTemplate(Torvane::Dialog::MFC::IPeople& people, QWidget* pParent) {
    CTemplateDownload download(people);
    if (!download.FetchList())
        return false;
    CTemplateDownloadDialog dialog(download, pParent);
    return dialog.exec() == QDialog::Accepted && download.Fetch(dialog.GetChosen());
}

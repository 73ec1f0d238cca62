#include "server/ui/TemplateDownloadDialog.h"

#include "platform/ui/Pictures.h"
#include "server/Texts.h"
#include "server/ui/DialogParts.h"

#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPixmap>
#include <QPointer>

namespace {

constexpr QSize c_pictureSize(400, 300);
constexpr int c_nListWidth = 220;

void AddCaption(QGridLayout* pGrid, int nColumn, const QString& strText, const QString& strKey,
                QWidget* pBuddy) {
    auto* pLabel = new QLabel(strText + strKey);
    pLabel->setBuddy(pBuddy);
    pGrid->addWidget(pLabel, 0, nColumn);
    pGrid->addWidget(pBuddy, 1, nColumn);
    pBuddy->setAccessibleName(strText);
}

} // namespace

CTemplateDownloadDialog::CTemplateDownloadDialog(CTemplateDownload& download, QWidget* pParent)
    : QDialog(pParent), m_download(download), m_pList(new QListWidget), m_pPicture(new QLabel) {
    setObjectName(QStringLiteral("CTemplateDownloadDialog"));
    setWindowTitle(ServerText::c_strDownloadTitle);
    m_pList->setObjectName(QStringLiteral("templates"));
    m_pList->setMinimumWidth(c_nListWidth);
    m_pPicture->setObjectName(QStringLiteral("preview"));
    m_pPicture->setFrameShape(QFrame::StyledPanel);
    m_pPicture->setAlignment(Qt::AlignCenter);
    const int nFrame = 2 * m_pPicture->frameWidth();
    m_pPicture->setFixedSize(c_pictureSize.grownBy({0, 0, nFrame, nFrame}));

    auto* pLayout = new QVBoxLayout(this);
    pLayout->setSizeConstraint(QLayout::SetFixedSize);
    auto* pGrid = new QGridLayout;
    AddCaption(pGrid, 0, ServerText::c_strTemplateList, QStringLiteral("(&L)"), m_pList);
    AddCaption(pGrid, 1, ServerText::c_strPreview, QString(), m_pPicture);
    pLayout->addLayout(pGrid);
    QDialogButtonBox* pButtons = AddButtons(this, [this] { OnOk(); });
    m_pList->setFocus();

    if (m_download.GetNames().isEmpty()) {
        m_pList->addItem(ServerText::c_strNoTemplateEntry);
        pButtons->findChild<QPushButton*>(QStringLiteral("ok"))->setEnabled(false);
        return;
    }
    m_pList->addItems(m_download.GetNames());
    m_pList->setCurrentRow(0);
    connect(m_pList, &QListWidget::itemSelectionChanged, this, &CTemplateDownloadDialog::ShowPreview);
}

void CTemplateDownloadDialog::showEvent(QShowEvent* pEvent) {
    QDialog::showEvent(pEvent);
    if (!m_bShown && !m_download.GetNames().isEmpty())
        QMetaObject::invokeMethod(this, &CTemplateDownloadDialog::ShowPreview, Qt::QueuedConnection);
    m_bShown = true;
}

std::optional<QString> CTemplateDownloadDialog::GetSelected() const {
    const QList<QListWidgetItem*> selected = m_pList->selectedItems();
    return selected.isEmpty() ? std::nullopt : std::optional(selected.first()->text());
}

void CTemplateDownloadDialog::ShowPreview() {
    const auto strName = GetSelected();
    if (!strName)
        return;
    const QPointer<CTemplateDownloadDialog> self(this);
    const auto strFile = m_download.FetchPreview(*strName);
    if (!self || !strFile)
        return;
    const QPixmap picture = Pictures::Fitted(*strFile, c_pictureSize, devicePixelRatioF());
    if (picture.isNull())
        m_download.TellNoPreview();
    else
        m_pPicture->setPixmap(picture);
}

void CTemplateDownloadDialog::OnOk() {
    m_strChosen = GetSelected().value_or(QString());
    if (m_download.CheckChoice(m_strChosen))
        accept();
}

bool DownloadTemplate(Torvane::Dialog::MFC::IPeople& people, QWidget* pParent) {
    CTemplateDownload download(people);
    if (!download.FetchList())
        return false;
    // The window over which it stands may go while it is open, and takes the dialog with it.
    const QPointer<CTemplateDownloadDialog> pDialog(new CTemplateDownloadDialog(download, pParent));
    const bool bAccepted = pDialog->exec() == QDialog::Accepted;
    if (!pDialog)
        return false;
    const QString strChosen = pDialog->GetChosen();
    delete pDialog;
    return bAccepted && download.Fetch(strChosen);
}

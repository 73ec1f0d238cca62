#include "course/ui/TemplateChooserDialog.h"

#include "course/Texts.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QImageReader>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr QSize c_pictureSize(400, 300);
constexpr int c_nMargin = 11;
constexpr int c_nSpacing = 8;

/// The picture, small enough for its place; empty when it can't be read. A picture of any size is decoded no
/// larger than it is shown.
QPixmap LoadPreview(const QString& strPath, const QSize& size) {
    if (!Torvane::File::IsFile(strPath))
        return {};
    QImageReader reader(Platform::ToNative(strPath));
    reader.setAutoTransform(true);
    // By its contents, so that a picture with the wrong ending shows too.
    reader.setDecideFormatFromContent(true);
    const QSize full = reader.size();
    if (full.isValid() && (full.width() > size.width() || full.height() > size.height()))
        reader.setScaledSize(full.scaled(size, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    return QPixmap::fromImage(reader.read());
}

} // namespace

CTemplateChooserDialog::CTemplateChooserDialog(const CTemplateStore& store, const QString& strCurrent,
                                               QWidget* pParent)
    : QDialog(pParent), m_store(store), m_pList(new QComboBox(this)), m_pPicture(new QLabel(this)) {
    setObjectName(QStringLiteral("templateDialog"));
    setWindowTitle(CourseText::c_strSetTemplateTitle);
    m_pList->setObjectName(QStringLiteral("templateList"));
    m_pPicture->setObjectName(QStringLiteral("templatePicture"));
    m_pPicture->setFixedSize(c_pictureSize);
    m_pPicture->setAlignment(Qt::AlignCenter);
    m_pPicture->setFrameShape(QFrame::StyledPanel);

    auto* pLabel = new QLabel(CourseText::c_strSetTemplateLabel, this);
    pLabel->setBuddy(m_pList);
    auto* pButtons = new QDialogButtonBox(this);
    auto* pOk = pButtons->addButton(CourseText::c_strOk, QDialogButtonBox::AcceptRole);
    pOk->setObjectName(QStringLiteral("ok"));
    pButtons->addButton(CourseText::c_strCancel, QDialogButtonBox::RejectRole)
        ->setObjectName(QStringLiteral("cancel"));

    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, c_nMargin);
    pLayout->setSpacing(c_nSpacing);
    pLayout->setSizeConstraint(QLayout::SetFixedSize);
    pLayout->addWidget(pLabel);
    pLayout->addWidget(m_pList);
    pLayout->addWidget(m_pPicture);
    pLayout->addWidget(pButtons);

    QStringList templates;
    m_store.ListTemplates(templates);
    m_pList->addItems(templates);
    m_pList->setCurrentIndex(qMax(0, static_cast<int>(templates.indexOf(strCurrent))));
    pOk->setEnabled(!templates.isEmpty());
    ShowPicture();
    connect(m_pList, &QComboBox::currentIndexChanged, this, &CTemplateChooserDialog::ShowPicture);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QString CTemplateChooserDialog::GetSelected() const {
    return m_pList->currentText();
}

void CTemplateChooserDialog::ShowPicture() {
    const qreal dRatio = devicePixelRatioF();
    QPixmap picture = LoadPreview(m_store.GetPreviewPath(GetSelected()), c_pictureSize * dRatio);
    picture.setDevicePixelRatio(dRatio);
    m_pPicture->setPixmap(picture);
}

std::optional<QString> CTemplateChooser::ChooseTemplate(const QString& strCurrent) {
    QWidget* pAbove = QApplication::activeModalWidget();
    const CTemplateStore store(CSysInfo::Instance().GetTemplatesFolder(false));
    // The window over which it stands may go while it is open, and takes the dialog with it.
    const QPointer<CTemplateChooserDialog> pDialog(
        new CTemplateChooserDialog(store, strCurrent, pAbove != nullptr ? pAbove : m_pParent.data()));
    const bool bAccepted = pDialog->exec() == QDialog::Accepted;
    if (!pDialog)
        return std::nullopt;
    const QString strSelected = pDialog->GetSelected();
    delete pDialog;
    return bAccepted && !strSelected.isEmpty() ? std::optional(strSelected) : std::nullopt;
}

#include "content/ui/CourseTemplatePage.h"

#include "content/Texts.h"
#include "content/ui/ChoiceList.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/PicturePane.h"

#include <QComboBox>
#include <QGridLayout>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>
#include <QWizard>

using namespace DialogParts;

namespace {

constexpr int c_nIconSide = 32;
constexpr int c_nMaxIconSide = 1024;

/// A template may come from anywhere: what would be no icon is not read as one.
QIcon ReadIcon(const QString& strPath) {
    if (!Torvane::File::IsFile(strPath))
        return {};
    const QString strFile = Platform::ToNative(strPath);
    const QSize size = QImageReader(strFile).size();
    if (size.isEmpty() || size.width() > c_nMaxIconSide || size.height() > c_nMaxIconSide)
        return {};
    return QIcon(strFile);
}

/// A template without an icon gets a blank one, so that all names stand in line.
QIcon TemplateIcon(const QString& strPath) {
    const QIcon icon = ReadIcon(strPath);
    if (!icon.pixmap(c_nIconSide).isNull())
        return icon;
    QPixmap blank(c_nIconSide, c_nIconSide);
    blank.fill(Qt::transparent);
    return QIcon(blank);
}

/// A small button with an arrow; Enter presses it, as it does any button that has the focus.
class CStepButton : public QToolButton {
public:
    CStepButton(QWidget* pParent, Qt::ArrowType arrow, const QString& strHint) : QToolButton(pParent) {
        setArrowType(arrow);
        setToolTip(strHint);
        setFocusPolicy(Qt::StrongFocus);
    }

protected:
    void keyPressEvent(QKeyEvent* pEvent) override {
        if (pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter)
            click();
        else
            QToolButton::keyPressEvent(pEvent);
    }
};

} // namespace

CSelectCourseTempletePropertyPage::CSelectCourseTempletePropertyPage(Torvane::Dialog::MFC::IPeople& people,
                                                                     CreateRecord& record)
    : CWizardPage(ContentText::c_strTemplatePage), m_people(people), m_record(record),
      m_store(CSysInfo::Instance().GetTemplatesFolder(false)) {
    using namespace ContentText;
    m_pTemplates = Named(new CChoiceList(this), "templateList", c_strTemplateList);
    m_pTemplates->setIconSize(QSize(c_nIconSide, c_nIconSide));
    m_pPages = Named(new QComboBox(this), "pageCombo", c_strPageCombo);
    // A page with a long name must not push the wizard apart.
    m_pPages->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_pPrevious = Named(new CStepButton(this, Qt::LeftArrow, c_strPreviewPrevious), "previewPrevious",
                        c_strPreviewPrevious);
    m_pNext = Named(new CStepButton(this, Qt::RightArrow, c_strPreviewNext), "previewNext", c_strPreviewNext);
    m_pPreview = Named(new CPicturePane(this), "preview", c_strPreview);
    LayOut();

    connect(m_pTemplates, &QListWidget::itemSelectionChanged, this,
            &CSelectCourseTempletePropertyPage::FillPages);
    connect(m_pTemplates, &QListWidget::doubleClicked, this, [this] { wizard()->next(); });
    connect(m_pPages, &QComboBox::currentIndexChanged, this, &CSelectCourseTempletePropertyPage::ShowPreview);
    connect(m_pPrevious, &QToolButton::clicked, this, [this] { Step(-1); });
    connect(m_pNext, &QToolButton::clicked, this, [this] { Step(1); });
}

void CSelectCourseTempletePropertyPage::LayOut() {
    auto* pPages = new QHBoxLayout;
    pPages->addWidget(m_pPages, 1);
    pPages->addWidget(m_pPrevious);
    pPages->addWidget(m_pNext);
    auto* pLayout = new QGridLayout(this);
    pLayout->setColumnStretch(0, 1);
    pLayout->setColumnStretch(1, 2);
    pLayout->setRowStretch(2, 1);
    pLayout->addWidget(LabelFor(ContentText::c_strTemplateList, m_pTemplates), 0, 0);
    pLayout->addWidget(m_pTemplates, 1, 0, 2, 1);
    pLayout->addWidget(LabelFor(ContentText::c_strPageCombo, m_pPages), 0, 1);
    pLayout->addLayout(pPages, 1, 1);
    pLayout->addWidget(m_pPreview, 2, 1);
}

void CSelectCourseTempletePropertyPage::Activate() {
    FillTemplates();
    FillPages();
}

QWidget* CSelectCourseTempletePropertyPage::GetFirstField() const {
    return m_pTemplates;
}

QString CSelectCourseTempletePropertyPage::Chosen() const {
    const QList<QListWidgetItem*> selected = m_pTemplates->selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text();
}

void CSelectCourseTempletePropertyPage::FillTemplates() {
    const QSignalBlocker silent(m_pTemplates);
    const QString strChosen = Chosen();
    QStringList names;
    m_store.ListTemplates(names);
    m_pTemplates->clear();
    for (const QString& strName : names) {
        auto* pItem = new QListWidgetItem(TemplateIcon(m_store.GetIconPath(strName)), strName, m_pTemplates);
        if (strName == strChosen)
            m_pTemplates->setCurrentItem(pItem);
    }
}

void CSelectCourseTempletePropertyPage::FillPages() {
    {
        const QSignalBlocker silent(m_pPages);
        m_pPages->clear();
        m_pPages->addItems(PreviewRows(m_store, Chosen()));
        m_pPages->setCurrentIndex(0);
    }
    ShowPreview();
}

void CSelectCourseTempletePropertyPage::Step(int nRows) {
    const int nRow = m_pPages->currentIndex() + nRows;
    if (nRow >= 0 && nRow < m_pPages->count())
        m_pPages->setCurrentIndex(nRow);
}

void CSelectCourseTempletePropertyPage::ShowPreview() {
    const int nRow = m_pPages->currentIndex();
    m_pPreview->Load(PreviewPath(m_store, Chosen(), nRow, m_pPages->currentText()));
    const bool bBack = nRow > 0;
    const bool bForward = nRow + 1 < m_pPages->count();
    // The focus of a button that goes off would jump to the wizard's own, and the next key would leave the
    // page.
    if ((m_pPrevious->hasFocus() && !bBack) || (m_pNext->hasFocus() && !bForward))
        m_pPages->setFocus();
    m_pPrevious->setEnabled(bBack);
    m_pNext->setEnabled(bForward);
}

bool CSelectCourseTempletePropertyPage::validatePage() {
    if (Chosen().isEmpty()) {
        m_people.Warn(ContentText::c_strNoTemplate);
        m_pTemplates->setFocus();
        return false;
    }
    m_record.TemplateName = Chosen();
    return true;
}

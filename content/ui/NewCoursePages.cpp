#include "content/ui/NewCoursePages.h"

#include "content/Texts.h"
#include "content/ui/PicturePane.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

/// Names a control for tests and for assistive technology.
template <typename CControl>
CControl* Named(CControl* pControl, const char* pszName, const QString& strAccessible) {
    pControl->setObjectName(QString::fromLatin1(pszName));
    // The label's access key is no part of the name.
    pControl->setAccessibleName(strAccessible.section(QLatin1String("(&"), 0, 0));
    return pControl;
}

QPlainTextEdit* ReadOnlyText(QWidget* pParent) {
    auto* pText = new QPlainTextEdit(pParent);
    pText->setReadOnly(true);
    pText->setTabChangesFocus(true);
    return pText;
}

QLabel* LabelFor(const QString& strText, QWidget* pControl) {
    auto* pLabel = new QLabel(strText, pControl->parentWidget());
    pLabel->setBuddy(pControl);
    return pLabel;
}

} // namespace

// Page 1.

CGetCourseInfoPropertyPage::CGetCourseInfoPropertyPage(CCourseChoice& choice, CreateRecord& record)
    : m_choice(choice), m_record(record) {
    using namespace ContentText;
    setTitle(c_strCoursePage);
    m_pSearch = Named(new QLineEdit(this), "courseSearch", c_strCourseSearch);
    m_pList = Named(new QListWidget(this), "courseList", c_strCourseList);
    m_pList->setUniformItemSizes(true);
    m_pDetails = Named(ReadOnlyText(this), "courseDetails", c_strCourseDetails);
    m_pPassword = Named(new QLineEdit(this), "password", c_strPassword);
    m_pPassword->setEchoMode(QLineEdit::Password);
    for (const CCourseInfo& info : m_choice.GetCourses())
        m_pList->addItem(info.Name);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(LabelFor(c_strCourseSearch, m_pSearch));
    pLayout->addWidget(m_pSearch);
    auto* pMiddle = new QHBoxLayout;
    pMiddle->addWidget(m_pList, 3);
    pMiddle->addWidget(m_pDetails, 2);
    pLayout->addLayout(pMiddle, 1);
    pLayout->addWidget(LabelFor(c_strPassword, m_pPassword));
    pLayout->addWidget(m_pPassword);

    connect(m_pSearch, &QLineEdit::textChanged, this, &CGetCourseInfoPropertyPage::Search);
    connect(m_pList, &QListWidget::itemSelectionChanged, this, [this] {
        const int nIndex = m_pList->selectedItems().isEmpty() ? -1 : m_pList->currentRow();
        ShowDetails(nIndex);
        if (!m_bSearching && nIndex >= 0)
            m_pSearch->setText(m_choice.GetCourses().at(nIndex).Name);
    });
}

void CGetCourseInfoPropertyPage::Search(const QString& strText) {
    const QList<QListWidgetItem*> selected = m_pList->selectedItems();
    if (strText.isEmpty() || (!selected.isEmpty() && selected.first()->text() == strText))
        return;
    const int nIndex = m_choice.FindByPrefix(strText);
    if (nIndex < 0)
        return;
    // What is being typed stays as typed.
    const QScopedValueRollback searching(m_bSearching, true);
    m_pList->setCurrentRow(nIndex);
}

void CGetCourseInfoPropertyPage::ShowDetails(int nIndex) {
    m_pDetails->setPlainText(nIndex < 0 ? QString()
                                        : CCourseChoice::DetailsText(m_choice.GetCourses().at(nIndex)));
}

bool CGetCourseInfoPropertyPage::validatePage() {
    const int nIndex = m_pList->selectedItems().isEmpty() ? -1 : m_pList->currentRow();
    switch (m_choice.Next(nIndex, m_pPassword->text())) {
    case CCourseChoice::ENext::Go:
        m_record.Info = m_choice.GetChosen();
        return true;
    case CCourseChoice::ENext::StayOnPassword:
        m_pPassword->setFocus();
        m_pPassword->selectAll();
        return false;
    case CCourseChoice::ENext::Stay:
        return false;
    }
    return false;
}

// Page 2.

CSelectCourseFolderPropertyPage::CSelectCourseFolderPropertyPage(Torvane::Dialog::MFC::IPeople& people,
                                                                 CreateRecord& record)
    : m_people(people), m_record(record) {
    using namespace ContentText;
    setTitle(c_strFolderPage);
    m_pName = Named(new QLineEdit(this), "courseName", c_strCourseName);
    m_pFolder = Named(new QLineEdit(this), "courseFolder", c_strCourseFolder);
    auto* pBrowse = Named(new QPushButton(c_strBrowse, this), "browse", c_strBrowse);
    pBrowse->setAutoDefault(false);

    auto* pFolderLine = new QHBoxLayout;
    pFolderLine->addWidget(m_pFolder, 1);
    pFolderLine->addWidget(pBrowse);
    auto* pLayout = new QFormLayout(this);
    pLayout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    pLayout->addRow(LabelFor(c_strCourseName, m_pName), m_pName);
    pLayout->addRow(LabelFor(c_strCourseFolder, m_pFolder), pFolderLine);
    connect(pBrowse, &QPushButton::clicked, this, &CSelectCourseFolderPropertyPage::Browse);
}

void CSelectCourseFolderPropertyPage::initializePage() {
    TakeFields();
    m_step.Enter(m_record.Info.Name);
    ShowFields();
}

void CSelectCourseFolderPropertyPage::TakeFields() {
    m_step.strName = m_pName->text();
    m_step.strFolder = Platform::FromNative(m_pFolder->text());
}

void CSelectCourseFolderPropertyPage::ShowFields() {
    m_pName->setText(m_step.strName);
    m_pFolder->setText(Platform::ToNativeExact(m_step.strFolder));
}

void CSelectCourseFolderPropertyPage::Browse() {
    TakeFields();
    const std::optional<QString> folder = m_people.PickFolder(ContentText::c_strPickCourseFolder,
                                                              CSysInfo::Instance().GetProjectsFolder(false));
    if (!folder)
        return;
    m_step.TakePicked(*folder);
    ShowFields();
}

bool CSelectCourseFolderPropertyPage::validatePage() {
    TakeFields();
    const QString strWarning = m_step.Next();
    if (!strWarning.isEmpty()) {
        m_people.Warn(strWarning);
        return false;
    }
    m_record.FileTitle = m_step.strName;
    m_record.Folder = m_step.strFolder;
    return true;
}

// Page 3.

CSelectCourseTempletePropertyPage::CSelectCourseTempletePropertyPage(Torvane::Dialog::MFC::IPeople& people,
                                                                     CreateRecord& record)
    : m_people(people), m_record(record), m_store(CSysInfo::Instance().GetTemplatesFolder(false)) {
    using namespace ContentText;
    setTitle(c_strTemplatePage);
    m_pTemplates = Named(new QListWidget(this), "templateList", c_strTemplateList);
    m_pTemplates->setIconSize(QSize(32, 32));
    m_pPages = Named(new QComboBox(this), "pageCombo", c_strPageCombo);
    m_pPrevious = Named(new QToolButton(this), "previewPrevious", c_strPreviewPrevious);
    m_pPrevious->setArrowType(Qt::LeftArrow);
    m_pPrevious->setFocusPolicy(Qt::TabFocus);
    m_pNext = Named(new QToolButton(this), "previewNext", c_strPreviewNext);
    m_pNext->setArrowType(Qt::RightArrow);
    m_pNext->setFocusPolicy(Qt::TabFocus);
    m_pPreview = Named(new CPicturePane(this), "preview", c_strPreview);

    auto* pPages = new QHBoxLayout;
    pPages->addWidget(m_pPages, 1);
    pPages->addWidget(m_pPrevious);
    pPages->addWidget(m_pNext);
    auto* pRight = new QVBoxLayout;
    pRight->addLayout(pPages);
    pRight->addWidget(m_pPreview, 1);
    auto* pLayout = new QHBoxLayout(this);
    pLayout->addWidget(m_pTemplates, 2);
    pLayout->addLayout(pRight, 3);

    connect(m_pTemplates, &QListWidget::itemSelectionChanged, this,
            &CSelectCourseTempletePropertyPage::FillPages);
    connect(m_pPages, &QComboBox::currentIndexChanged, this, &CSelectCourseTempletePropertyPage::ShowPreview);
    connect(m_pPrevious, &QToolButton::clicked, this, [this] { Step(-1); });
    connect(m_pNext, &QToolButton::clicked, this, [this] { Step(1); });
}

void CSelectCourseTempletePropertyPage::initializePage() {
    FillTemplates();
    FillPages();
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
        const QIcon icon(Platform::ToNative(m_store.GetIconPath(strName)));
        auto* pItem = new QListWidgetItem(icon, strName, m_pTemplates);
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
    m_pPrevious->setEnabled(nRow > 0);
    m_pNext->setEnabled(nRow + 1 < m_pPages->count());
}

bool CSelectCourseTempletePropertyPage::validatePage() {
    if (Chosen().isEmpty()) {
        m_people.Warn(ContentText::c_strNoTemplate);
        return false;
    }
    m_record.TemplateName = Chosen();
    return true;
}

// Page 4.

CShowUserSelectPropertyPage::CShowUserSelectPropertyPage(CreateRecord& record) : m_record(record) {
    setTitle(ContentText::c_strSummaryPage);
    m_pSummary = Named(ReadOnlyText(this), "summary", ContentText::c_strSummary);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pSummary);
}

void CShowUserSelectPropertyPage::initializePage() {
    m_pSummary->setPlainText(SummaryText(m_record, Platform::ToNativeExact(m_record.Folder)));
}

bool CShowUserSelectPropertyPage::validatePage() {
    CompleteRecord(m_record);
    return true;
}

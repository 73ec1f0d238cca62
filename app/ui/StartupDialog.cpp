#include "app/ui/StartupDialog.h"

#include "app/StartupCourses.h"
#include "app/Texts.h"
#include "app/ui/ProgramIcon.h"
#include "course/ProjectFile.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

CStartupDialog::CStartupDialog(Torvane::Dialog::MFC::IPeople& people, QWidget* pParent)
    : QDialog(pParent), m_people(people) {
    setObjectName(QStringLiteral("CStartupDialog"));
    setWindowTitle(AppTexts::c_strStartupTitle);
    QRect place(0, 0, 520, 340);
    if (pParent)
        place.moveCenter(pParent->geometry().center());
    setGeometry(place);

    m_pTabs = new QTabWidget(this);
    m_pTabs->setObjectName(QStringLiteral("tabs"));
    m_pTabs->addTab(MakeNewTab(), AppTexts::c_strTabNew);
    m_pTabs->addTab(MakeOpenTab(), AppTexts::c_strTabOpen);
    m_pDontShow = new QCheckBox(AppTexts::c_strDontShow, this);
    m_pDontShow->setObjectName(QStringLiteral("dontShow"));
    m_pBrowse = new QPushButton(AppTexts::c_strBrowse, this);
    m_pBrowse->setObjectName(QStringLiteral("browse"));
    m_pOk = new QPushButton(AppTexts::c_strOpen, this);
    m_pOk->setObjectName(QStringLiteral("ok"));
    m_pOk->setDefault(true);
    auto* pCancel = new QPushButton(AppTexts::c_strCancel, this);
    pCancel->setObjectName(QStringLiteral("cancel"));

    auto* pButtons = new QHBoxLayout;
    pButtons->addWidget(m_pDontShow);
    pButtons->addStretch();
    pButtons->addWidget(m_pBrowse);
    pButtons->addWidget(m_pOk);
    pButtons->addWidget(pCancel);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pTabs);
    pLayout->addLayout(pButtons);

    connect(m_pOk, &QPushButton::clicked, this, &CStartupDialog::accept);
    connect(pCancel, &QPushButton::clicked, this, &CStartupDialog::reject);
    connect(m_pBrowse, &QPushButton::clicked, this, &CStartupDialog::Browse);
    connect(m_pTabs, &QTabWidget::currentChanged, this, &CStartupDialog::UpdateButtons);
    m_pNewList->setFocus();
    UpdateButtons();
}

QWidget* CStartupDialog::MakeNewTab() {
    m_pNewList = new QListWidget;
    m_pNewList->setObjectName(QStringLiteral("newList"));
    m_pNewList->setAccessibleName(AppTexts::c_strTabNew);
    m_pNewList->setViewMode(QListView::IconMode);
    m_pNewList->setIconSize(QSize(32, 32));
    m_pNewList->setMovement(QListView::Static);
    m_pNewList->setSpacing(12);
    m_pNewList->addItem(new QListWidgetItem(LoadProgramIcon(), AppTexts::c_strNewCourse));
    m_pNewList->setCurrentRow(0);
    connect(m_pNewList, &QListWidget::itemSelectionChanged, this, &CStartupDialog::UpdateButtons);
    connect(m_pNewList, &QListWidget::itemDoubleClicked, this, &CStartupDialog::accept);
    return m_pNewList;
}

QWidget* CStartupDialog::MakeOpenTab() {
    m_pRecent = new QTreeWidget;
    m_pRecent->setObjectName(QStringLiteral("recentList"));
    m_pRecent->setAccessibleName(AppTexts::c_strTabOpen);
    m_pRecent->setRootIsDecorated(false);
    m_pRecent->setAllColumnsShowFocus(true);
    m_pRecent->header()->hide();
    connect(m_pRecent, &QTreeWidget::itemSelectionChanged, this, &CStartupDialog::UpdateButtons);
    connect(m_pRecent, &QTreeWidget::itemDoubleClicked, this, &CStartupDialog::accept);
    return m_pRecent;
}

// Only when it is asked for: a header loads the bold Chinese font, which nothing else at the start needs.
void CStartupDialog::FillRecent() {
    m_pRecent->setHeaderLabels({AppTexts::c_strColumnCourse, AppTexts::c_strColumnPath});
    m_pRecent->setColumnWidth(0, 100);
    m_pRecent->setColumnWidth(1, 350);
    m_pRecent->header()->show();
    for (const StartupCourse& course : ListStartupCourses()) {
        auto* pItem =
            new QTreeWidgetItem(m_pRecent, {course.strTitle, Platform::ToNativeExact(course.strFolder)});
        pItem->setData(0, Qt::UserRole, StartupCoursePath(course));
        pItem->setToolTip(1, pItem->text(1));
    }
    if (m_pRecent->topLevelItemCount() > 0)
        m_pRecent->setCurrentItem(m_pRecent->topLevelItem(0));
}

bool CStartupDialog::IsDontShowChecked() const {
    return m_pDontShow->isChecked();
}

void CStartupDialog::UpdateButtons() {
    // The tabs are made before the buttons, and report their first selection.
    if (!m_pOk)
        return;
    const bool bOpenTab = m_pTabs->currentWidget() == m_pRecent;
    if (bOpenTab && m_pRecent->header()->isHidden())
        FillRecent();
    m_pBrowse->setVisible(bOpenTab);
    m_pOk->setEnabled(bOpenTab ? !m_pRecent->selectedItems().isEmpty()
                               : !m_pNewList->selectedItems().isEmpty());
}

void CStartupDialog::accept() {
    if (m_pTabs->currentWidget() == m_pRecent) {
        const auto selected = m_pRecent->selectedItems();
        if (selected.isEmpty()) {
            m_people.Notice(AppTexts::c_strChooseCourse);
            return;
        }
        m_strCoursePath = selected.first()->data(0, Qt::UserRole).toString();
    }
    QDialog::accept();
}

void CStartupDialog::Browse() {
    const auto strPath = m_people.PickOpenFile(
        AppTexts::c_strOpenCourseTitle, CSysInfo::Instance().GetProjectsFolder(false), ProjectFileFilter());
    if (!strPath)
        return;
    m_strCoursePath = *strPath;
    QDialog::accept();
}

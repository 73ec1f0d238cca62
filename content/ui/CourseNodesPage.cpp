#include "content/ui/CourseNodesPage.h"

#include "content/Texts.h"
#include "foundation/SysInfo.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/TriStateTree.h"

#include <QVBoxLayout>
#include <QWizard>

using Torvane::Control::MFC::CTriStateTreeCtrl;

CSelectCourseNodePropertyPage::CSelectCourseNodePropertyPage(Torvane::Dialog::MFC::IPeople& people,
                                                             CreateRecord& record)
    : CWizardPage(ContentText::c_strNodesPage), m_people(people), m_record(record) {
    m_pTree = DialogParts::Named(new CTriStateTreeCtrl(this), "nodeTree", ContentText::c_strTreeName);
    m_pTree->LoadStateImage();
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pTree);
}

void CSelectCourseNodePropertyPage::initializePage() {
    m_pTree->clear();
    m_nodes.clear();
    std::optional<QList<NodeRow>> rows;
    if (ReadInitialNodes(CSysInfo::Instance().GetSysDataFolder(true) + ContentText::c_strNodesFile, m_nodes))
        rows = NodeRows(m_nodes);
    m_items.fill(nullptr, m_nodes.size());
    if (!rows) {
        m_people.Error(ContentText::c_strSystemFileBroken);
        if (wizard() != nullptr)
            wizard()->reject();
        return;
    }
    for (const NodeRow& row : *rows) {
        const InitialNode& node = m_nodes.at(row.nLine);
        QTreeWidgetItem* pParent = row.nParentLine < 0 ? nullptr : m_items.at(row.nParentLine);
        m_items[row.nLine] = m_pTree->AddNode(pParent, {node.Title, node.Selected});
    }
    m_pTree->expandAll();
}

QWidget* CSelectCourseNodePropertyPage::GetFirstField() const {
    return m_pTree;
}

bool CSelectCourseNodePropertyPage::validatePage() {
    m_record.InitialNodes = m_nodes;
    for (qsizetype nLine = 0; nLine < m_items.size(); ++nLine) {
        if (m_items.at(nLine) != nullptr)
            m_record.InitialNodes[nLine].Selected = m_pTree->IsItemChecked(m_items.at(nLine));
    }
    return true;
}

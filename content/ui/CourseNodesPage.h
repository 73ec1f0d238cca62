#pragma once

#include "content/NewCourse.h"
#include "content/ui/WizardPage.h"
#include "platform/base/People.h"

class QTreeWidgetItem;
namespace Torvane::Control::MFC {
class CTriStateTreeCtrl;
}

/// The page of the initial nodes. The wizard holds it without showing it: a new course takes all nodes that
/// its template suggests.
class CSelectCourseNodePropertyPage : public CWizardPage {
    Q_OBJECT
public:
    CSelectCourseNodePropertyPage(Torvane::Dialog::MFC::IPeople& people, CreateRecord& record);

    /// Fills the tree from the delivered list. Where that can't be used it says so and ends the wizard with
    /// cancel.
    void initializePage() override;
    QWidget* GetFirstField() const override;
    /// Each node's box goes to its line of the record.
    bool validatePage() override;

private:
    Torvane::Dialog::MFC::IPeople& m_people;
    CreateRecord& m_record;
    Torvane::Control::MFC::CTriStateTreeCtrl* m_pTree;
    QList<InitialNode> m_nodes;
    /// The items by line; null for a line to which nothing leads.
    QList<QTreeWidgetItem*> m_items;
};

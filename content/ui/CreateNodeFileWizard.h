#pragma once

#include "content/NodeFileParams.h"
#include "content/ui/KindFields.h"
#include "content/ui/PagedWizard.h"

class CSelectCreateTypePropertyPage;

/// The wizard "创建栏目文件向导": what a node's content is made of, and the parameters of that kind. Collects
/// and checks; writes nothing.
class CCreateNodeFileWizard : public CPagedWizard {
    Q_OBJECT
public:
    CCreateNodeFileWizard(Torvane::Dialog::MFC::IPeople& people, const ContentPreset& preset,
                          const AskLink& askLink, QWidget* pParent);

    /// Complete once the wizard was finished.
    CNodeFileParams GetParams() const { return m_params; }

protected:
    void Begin() override;

private:
    CNodeFileParams m_params;
    CSelectCreateTypePropertyPage* m_pTypePage;
};

#include "content/ui/CreateNodeFileWizard.h"

#include "content/Texts.h"
#include "content/ui/NodeFileParamsPage.h"
#include "content/ui/NodeFileTypePage.h"

CCreateNodeFileWizard::CCreateNodeFileWizard(Torvane::Dialog::MFC::IPeople& people,
                                             const ContentPreset& preset, const AskLink& askLink,
                                             QWidget* pParent)
    : CPagedWizard(
          ContentText::c_strContentWizard,
          {ContentText::c_strContentBack, ContentText::c_strContentNext, ContentText::c_strContentFinish},
          pParent),
      m_pTypePage(new CSelectCreateTypePropertyPage(people, preset, m_params)) {
    setObjectName(QStringLiteral("CCreateNodeFileWizard"));
    auto* pParamsPage = new CCreateFileParamSetPropertyPage(people, askLink, m_params);
    // The window keeps its width from page to page.
    m_pTypePage->setMinimumWidth(pParamsPage->sizeHint().width());
    addPage(m_pTypePage);
    addPage(pParamsPage);
}

void CCreateNodeFileWizard::Begin() {
    m_pTypePage->ShowAdvice();
}

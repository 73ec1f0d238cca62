#pragma once

#include "content/ui/BookShowView.h"
#include "platform/base/People.h"

#include <memory>

class CWebBrowser2Ex;

/// The built-in HTML editor: edits the page of a node in a browser surface in design mode.
class CEditorView : public CBookShowView {
    Q_OBJECT
public:
    CEditorView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people, QWidget* pParent = nullptr);
    ~CEditorView() override;

    bool LeaveNode(bool bCanCancel) override;
    void ShowNode() override;

    /// Whether an editing command is enabled, and running one by its id.
    bool IsCommandEnabled(int nCommand) const;
    bool RunCommand(int nCommand);
};

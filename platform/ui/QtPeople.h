#pragma once

#include "platform/base/People.h"

class QWidget;

/// The real boxes, pickers and status windows.
class CQtPeople : public Torvane::Dialog::MFC::IPeople {
public:
    /// The window over which boxes stand; may be set later and may be null.
    void SetParent(QWidget* pParent) { m_pParent = pParent; }

    Torvane::Dialog::MFC::BoxAnswer Ask(const QString& strText, const QString& strTitle,
                                        Torvane::Dialog::MFC::BoxButtons buttons,
                                        Torvane::Dialog::MFC::BoxIcon icon) override;
    std::unique_ptr<Torvane::Dialog::MFC::CShowStatusDlg> OpenStatus() override;
    void KeepPainting() override;
    std::optional<QString> PickOpenFile(const QString& strTitle, const QString& strFolder,
                                        const QString& strFilter) override;
    std::optional<QString> PickFolder(const QString& strPrompt, const QString& strFolder) override;

private:
    QWidget* m_pParent = nullptr;
};

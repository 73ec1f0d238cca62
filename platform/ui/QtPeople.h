#pragma once

#include "platform/base/People.h"

#include <QPointer>
#include <QWidget>

/// The real boxes, pickers and status windows. Windows carry object names: a box is "messageBox" with the
/// buttons "ok", "cancel", "yes", "no" and "retry"; the pickers are "fileDialog" and "folderDialog"; the
/// status window is "statusWindow" with the button "statusCancel".
class CQtPeople : public Torvane::Dialog::MFC::IPeople {
public:
    /// The window over which boxes stand; may be set later and may be null. A box that comes up while a modal
    /// dialog is open stands over that dialog.
    void SetParent(QWidget* pParent) { m_pParent = pParent; }

    /// True inside KeepPainting. Timers fire there too: a handler that starts work of its own puts it off.
    static bool IsKeepingPainting();

    /// IsKeepingPainting while this stands.
    class CPainting {
    public:
        CPainting();
        ~CPainting();
        CPainting(const CPainting&) = delete;
        CPainting& operator=(const CPainting&) = delete;
    };

    /// For a handler that can't put its work off: while this stands, KeepPainting works inside it too.
    class CPaintInside {
    public:
        CPaintInside();
        ~CPaintInside();
        CPaintInside(const CPaintInside&) = delete;
        CPaintInside& operator=(const CPaintInside&) = delete;

    private:
        bool m_bBarred;
    };

    Torvane::Dialog::MFC::BoxAnswer Ask(const QString& strText, const QString& strTitle,
                                        Torvane::Dialog::MFC::BoxButtons buttons,
                                        Torvane::Dialog::MFC::BoxIcon icon,
                                        Torvane::Dialog::MFC::BoxDefault byEnter) override;
    /// The box to tick is "forAll".
    YesNoAll QueryYesNoAll(const QString& strText) override;
    std::unique_ptr<Torvane::Dialog::MFC::CShowStatusDlg> OpenStatus() override;
    Torvane::Dialog::MFC::CShowStatusDlg* GetStatus() override;
    void KeepPainting() override;
    std::unique_ptr<CInputStop> StopInput() override;
    std::optional<QString> PickOpenFile(const QString& strTitle, const QString& strFolder,
                                        const QString& strFilter) override;
    std::optional<QString> PickSaveFile(const QString& strTitle, const QString& strName) override;
    std::optional<QString> PickFolder(const QString& strPrompt, const QString& strFolder) override;
    std::optional<QString> PickNewFolder(const QString& strPrompt, const QString& strFolder,
                                         const QString& strName) override;

private:
    QWidget* Parent() const;

    QPointer<QWidget> m_pParent;
};

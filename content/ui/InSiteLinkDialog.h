#pragma once

#include "content/BookTree.h"
#include "content/InSiteLink.h"
#include "content/TreeSelectionModel.h"
#include "platform/base/People.h"

#include <QDialog>
#include <QTimer>

#include <optional>

class CPlaceList;
class CWebBrowser2Ex;
class QLabel;
class QLineEdit;
class QTreeView;

/// The dialog "设置站内链接": the tree of the course's nodes beside a live preview of the chosen one.
/// Whatever page, anchor or slide the preview has reached is the link.
class CInSiteLinkDialog : public QDialog {
    Q_OBJECT
public:
    /// self: the node that can't be chosen; read here alone. Its course and the people must outlive the
    /// dialog. Throws Torvane::CRunException when the store can't be read.
    /// strPresent: the link that there is, which shows at first; empty for none.
    CInSiteLinkDialog(const CBookNode& self, Torvane::Dialog::MFC::IPeople& people, QWidget* pParent,
                      const QString& strPresent = {});
    ~CInSiteLinkDialog() override;

    /// The link that was chosen, once the dialog has ended with OK: a file URL with a fragment if any, an
    /// address of the web, or the path of a file.
    QString GetLink() const { return m_strLink; }

    void accept() override;

private:
    void LayOut();
    QTreeView* MakeTree();
    CWebBrowser2Ex* MakePreview();
    CPlaceList* MakePlaces();
    void SelectFirst(const QString& strPresent);
    /// Runs a step that reads the store and shows what it throws; nothing may pass into the event loop.
    template <class Step>
    void Guarded(Step step);
    void SelectWhatHides(const QModelIndex& index);
    void OnSelected();
    void ShowPreview();
    void OrderTabs();
    void Follow();
    void OpenHere();
    /// Below the location line, until another place shows: why a click has chosen nothing.
    void Tell(const QString& strText);
    void TellMissing(const QString& strPath);
    void SetPlace(const QString& strPlace);
    void ReadPlaces(const QString& strPage);
    void ChoosePlace(const QString& strName);
    void GoToChosen();
    QString NodeResourceFolder() const;

    Torvane::Dialog::MFC::IPeople& m_people;
    qint32 m_nSelf;
    CBookTree m_tree;
    CTreeSelectionModel m_selection;
    QTreeView* m_pTree = nullptr;
    CWebBrowser2Ex* m_pPreview = nullptr;
    CPlaceList* m_pPlaces = nullptr;
    QLineEdit* m_pPlace = nullptr;
    QLabel* m_pNote = nullptr;
    /// Runs until the selected node shows, and until the line follows the preview.
    QTimer m_toShow;
    QTimer m_toFollow;
    /// Runs until the preview goes to the place that was chosen in the list.
    QTimer m_toGo;
    QString m_strChosen;
    /// Runs until what the person has clicked on in the preview is chosen.
    QTimer m_toOpen;
    QString m_strToOpen;
    /// Runs until a link that was accepted while its page was still on its way can be taken.
    QTimer m_toAccept;
    InSiteLink::Preview m_preview;
    QString m_strPlace;
    /// Where the preview stood when the line last followed it.
    QString m_strFollowed;
    /// The page whose places the list shows.
    QString m_strListed;
    /// The link that there is, until its node has shown.
    QString m_strPresent;
    QString m_strLink;
};

/// Lets the person choose a place inside the course for a link of the node, beginning at the link that there
/// is; nothing when cancelled. A failure of the store is shown. The link is CNodeFileParams::SiteLinkUrl; see
/// InSiteLink for its stored forms.
std::optional<QString> AskInSiteLink(CBookNode& self, QWidget* pParent, const QString& strPresent = {});

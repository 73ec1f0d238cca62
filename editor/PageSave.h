#pragma once

#include "editor/ResourceCopies.h"
#include "platform/base/People.h"

#include <functional>
#include <memory>
#include <optional>

/// The text of the page being edited and what its surface reports about it. Every call is false when the
/// surface can't tell.
class ILivePage {
public:
    virtual ~ILivePage() = default;
    /// From the source box while that holds the live text, else from the design surface.
    virtual bool GetCurrentHtml(QString& strHtml) = 0;
    virtual bool SetCurrentHtml(const QString& strHtml) = 0;
    /// Whether the source box holds the live text.
    virtual bool IsInSource() const = 0;
    /// Of the live text, as they stand in it.
    virtual bool GetAllImageSrc(QStringList& list) = 0;
    virtual bool GetAllEmbededSrc(QStringList& list) = 0;
    virtual bool GetAllAnchorHref(QStringList& list) = 0;
    /// Of the design surface, whichever of the two holds the live text.
    virtual bool GetURL(QString& strUrl) = 0;
    /// The wait cursor for as long as the object lives, which must be gone before a box comes up.
    virtual std::shared_ptr<void> ShowBusy() { return nullptr; }
};

enum class ESaveResult {
    /// The page could not be written; the person has been told.
    NotWritten = -2,
    /// The person wants to stay, or has given up the copies.
    Cancelled = -1,
    /// Declined, or the live text could not be had; in the latter case the person has been told.
    NotSaved = 0,
    /// Saved, or nothing to save.
    Saved = 1,
};

/// The one way on which a page reaches the disk. Whether it has changed is found out by comparing texts;
/// there is no flag.
class CPageSaver {
public:
    using FetchFile = CResourceCopies::FetchFile;
    /// Writes the page as a whole or not at all. False or an exception of the CRunException family when it
    /// can't be written, or when what comes behind fails, as its size in the store.
    using WritePage = std::function<bool(const QString& strHtml)>;

    /// Page and people outlive the saver.
    CPageSaver(ILivePage& page, Torvane::Dialog::MFC::IPeople& people, FetchFile fetch);

    /// Begins with a page that the surface has just loaded. strNodeResourceFolder has a trailing backslash.
    void Open(const QString& strPagePath, const QString& strNodeResourceFolder, WritePage write);

    const QString& GetPagePath() const { return m_strPagePath; }
    const ResourceText::PageFolders& GetFolders() const { return m_folders; }

    /// Whether the design surface still shows the page that it loaded.
    bool SurfaceHoldsPage();

    /// bWriteBack: the live text becomes what was written. bAsk: the person may decline, and with bCanCancel
    /// stay. With bCanCancel she may give up the copies too, and with them the save, of which nothing is
    /// left. A resource that does not come keeps its old reference in the page, and is named behind the save.
    ESaveResult SavePage(bool bWriteBack, bool bAsk, bool bCanCancel);

    /// Saves on the way out. False when the page is to stay: the person said so, or it could not be written
    /// and the person may still cancel.
    bool MayLeave(bool bCanCancel);

    /// Whether nothing is left for which the text would have to be kept: the last SavePage wrote it, found it
    /// unchanged, or the person gave it up.
    bool IsSettled() const { return m_bSettled; }

    /// Deletes the files in the resource folder to which neither the live text nor the page on the disk
    /// refers. False when the live text could not be had.
    bool ClearGarbage();

private:
    bool GetLiveText(QString& strHtml);
    bool GetReferences(ResourceText::References& references, QString& strFailure);
    void RememberAsLoaded();
    bool HasChanged(const QString& strHtml, const QString& strText, const QString& strOnDisk,
                    bool bLeaving) const;
    ESaveResult SaveLiveText(bool bWriteBack, bool bAsk, bool bCanCancel);
    ESaveResult MayWrite(bool bAsk, bool bCanCancel);
    bool Write(const QString& strText);
    bool IsOnDisk(const QString& strText) const;
    bool WriteBack(const QString& strHtml, const QString& strText);

    ILivePage& m_page;
    Torvane::Dialog::MFC::IPeople& m_people;
    FetchFile m_fetch;
    WritePage m_write;
    QString m_strPagePath;
    /// What the surface called the page when it had just loaded it; empty when it had not.
    QString m_strLoadedUrl;
    ResourceText::PageFolders m_folders;
    struct AsLoaded {
        QString strHtml;
        /// What that would be saved as.
        QString strText;
        QString strFile;
    };
    /// The untouched page. The surface writes markup in its own way, so that a page nobody has typed in may
    /// differ from its file; such a page asks nothing when it is left, as long as the file is the one that it
    /// was loaded from.
    std::optional<AsLoaded> m_asLoaded;
    bool m_bSettled = false;
};

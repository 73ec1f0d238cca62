#pragma once

#include "content/StatusTask.h"
#include "editor/ResourceText.h"

#include <QSet>

/// The copies and downloads of one save, on a thread beside; the person sees how far they are and may give
/// them up.
class CResourceCopies : public CStatusTask {
public:
    /// Fetches a URL into a new file, asking goOn all the time; false when that failed, with nothing left at
    /// the path. Called on the thread beside.
    using FetchFile =
        std::function<bool(const QString& strUrl, const QString& strPath, const std::function<bool()>& goOn)>;

    /// People and copies outlive the task. bMayCancel: who gives up gets a message, and Run is false.
    /// Otherwise giving up makes failures of the copies that are left.
    CResourceCopies(Torvane::Dialog::MFC::IPeople& people, const QList<ResourceText::ResourceCopy>& copies,
                    QString strResFolder, FetchFile fetch, bool bMayCancel);

    /// Which of the copies had to be made and were not.
    QSet<qsizetype> GetFailed() const;
    /// What failed, each once, as a person writes it. A source that came by another of the copies is none.
    QStringList GetFailedNames() const;

    /// Takes the copies away again, for a save that has come to nothing.
    void RemoveMade();

protected:
    void Work() override;

private:
    const ResourceText::ResourceCopy& CopyOf(qsizetype nPiece) const;
    bool Make(const ResourceText::ResourceCopy& copy, Torvane::File::IWalkFilter& filter) const;

    const QList<ResourceText::ResourceCopy>& m_copies;
    QString m_strResFolder;
    FetchFile m_fetch;
    bool m_bMayCancel;
    /// The copies to be made, by their indices.
    QList<qsizetype> m_pieces;
    /// The indices of those that were made. The thread beside fills it.
    QSet<qsizetype> m_made;
};

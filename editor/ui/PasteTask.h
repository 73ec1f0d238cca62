#pragma once

#include "content/StatusTask.h"
#include "editor/PastedPictures.h"
#include "editor/ResourceText.h"
#include "platform/ui/PastedData.h"

#include <optional>

/// A link in a page to a file that was copied beside it.
struct FileLink {
    QString strMarkup;
    /// The new file; empty when it lay there before.
    QString strCopy;
};

/// Copies the file into the page's resource folder. Throws Torvane::CRunException, also when the filter ends
/// it.
FileLink LinkToFile(const QString& strPath, const ResourceText::PageFolders& folders,
                    Torvane::File::IWalkFilter* pFilter = nullptr);

/// Takes such files away again, as far as possible; an empty path is none.
void RemoveCopies(const QStringList& paths);

/// Makes of what is pasted the markup that a page takes, with its pictures as files; on a thread beside, and
/// the person may give it up.
class CPasteTask : public CStatusTask {
public:
    struct Place {
        /// What the pictures are kept in, and the course that they are pasted into.
        QString strPicturesFolder;
        QString strCourseFolder;
        ResourceText::PageFolders Folders;
    };
    /// bOwnCopy: the markup was copied in a page of ours, and stays as it is.
    CPasteTask(Torvane::Dialog::MFC::IPeople& people, SPastedData pasted, bool bOwnCopy, const Place& place);

    /// No value when nothing was offered that a page can take.
    const std::optional<QString>& GetMarkup() const { return m_markup; }
    /// Whether of a text that is too much only its words are left.
    bool IsPlainInstead() const { return m_bPlainInstead; }
    /// Why a picture could not be read or written; empty when all were.
    QString GetPictureFailure() const { return m_pictures.GetFailure(); }
    /// The names of what was offered as files and is none.
    const QStringList& GetLeftOut() const { return m_leftOut; }

    /// The new files go again: nothing has come into the page.
    void RemoveMade();

    /// The engine takes longer for more than anybody waits.
    static constexpr qsizetype c_nMaxMarkup = 1'000'000;

protected:
    void Work() override;
    void TellEnd(Torvane::Dialog::MFC::IPeople& people, const QString& strText) override;

private:
    void TakeFiles();
    void TakeFile(const QString& strPath, Torvane::File::IWalkFilter& filter);
    void TakeOwnCopy();
    void TakePicture();
    void TakeText(Torvane::File::IWalkFilter& filter);

    const SPastedData m_pasted;
    const bool m_bOwnCopy;
    const ResourceText::PageFolders m_folders;
    // The thread beside fills these.
    CPastedPictures m_pictures;
    QStringList m_copies;
    QStringList m_leftOut;
    std::optional<QString> m_markup;
    bool m_bPlainInstead = false;
};

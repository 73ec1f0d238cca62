#pragma once

#include "editor/KeptPages.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>

#include <functional>
#include <optional>

/// Keeps the text of the page that is being edited: some seconds after a change it asks for the text and has
/// it written on a thread beside, so that typing never waits for a disk. A text that is slow to get is asked
/// for less often.
class CPageKeeper {
public:
    struct Text {
        QString strHtml;
        bool bInSource = false;
    };
    /// Asks for the live text. The answer comes at once or later, on the same thread, or never when the page
    /// has gone; it is nothing when the text is what it was at the last asking, or can't be had.
    using Answer = std::function<void(std::optional<Text>)>;
    using AskText = std::function<void(Answer)>;
    /// Told once for each page that is opened, with the failure's message; from the event loop.
    using TellFailure = std::function<void(const QString&)>;

    CPageKeeper(AskText ask, TellFailure tell);
    /// What is kept stays kept.
    ~CPageKeeper();
    CPageKeeper(const CPageKeeper&) = delete;
    CPageKeeper& operator=(const CPageKeeper&) = delete;

    /// Begins with an untouched page; nothing is written until its text is another. About says which page;
    /// its text is what the surface makes of the page.
    void Open(const KeptPage& about);
    /// The text was kept earlier and goes on being kept in that file.
    void TakeUp(const KeptPage& kept);
    bool IsOpen() const { return m_bOpen; }

    /// The text may have changed.
    void Touch();
    /// What the live text is now, for whoever happens to have it; also before Open, for a caller who then
    /// need not ask for it again.
    void Know(const Text& text);
    /// The page on disk holds this text now, and hash says what it is.
    void Saved(const QString& strHtml, const QByteArray& hash);
    /// The page is left with nothing to save, or the person gave the text up: nothing of it is kept.
    void Drop();
    /// The page is left or lost with a text that nobody decided about: the newest known one is kept.
    void Close();

    /// Where the pictures lie that are pasted into the page; they go when it is left with nothing to save, or
    /// the text is given up.
    QString GetPicturesFolder() const { return KeptPages::PicturesFolder(m_about.strPath); }

    /// What may yet be pasted somewhere. Pictures that it names stay until another page is left and it names
    /// them no longer; those that stand when the program ends go at a later opening of the course.
    void SetStillWanted(std::function<QString()> text) { m_stillWanted = std::move(text); }

    /// The newest known text, and whether it is another than the page's on disk.
    const Text& GetText() const { return m_text; }
    bool HasText() const { return m_bKnown; }
    bool HasUnsaved() const { return m_text.strHtml != m_strOnDisk; }

    /// How long after a change the text is kept, in milliseconds.
    void SetDelay(int nMilliseconds) { m_nDelay = nMilliseconds; }

private:
    void Ask();
    void Take(const std::optional<Text>& text);
    void Keep();
    void Forget();
    void ForgetPictures();
    void Written(const QString& strFailure);
    void End();

    /// Pictures that are to go, and the saved text of their page.
    struct LeftPictures {
        QString strPath;
        QString strSaved;
    };

    AskText m_ask;
    TellFailure m_tell;
    std::function<QString()> m_stillWanted;
    QList<LeftPictures> m_left;
    KeptPage m_about;
    bool m_bOpen = false;
    Text m_text;
    bool m_bKnown = false;
    QString m_strOnDisk;
    /// What the file holds, or will when the writer is done; nothing when that isn't known.
    std::optional<QString> m_kept;
    /// There may be a file.
    bool m_bFile = false;
    int m_nDelay;
    QTimer m_timer;
    /// For how long the answer has been awaited.
    QElapsedTimer m_asked;
    bool m_bAsking = false;
    bool m_bWriting = false;
    bool m_bTold = false;
    /// Answers that come after the page was left are none of the next one's.
    int m_nPage = 0;
    QObject m_context;
    /// One thread, so that writing and removing keep their order. Declared last: it is waited for first.
    QThreadPool m_writer;
};

#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

/// Puts a template into its place as a whole or not at all.
///
/// The new one grows in a folder of its own on the same volume, ".vorel-fetch" beside the folder of all
/// templates: within that, whatever is half done would be offered as a template. Only where no such folder
/// can be made it stands among the templates. One fetcher at a time has it; what a killed one left is put in
/// order by the next. Native paths. Failures are Torvane::CRunException.
class CInstallFolder {
public:
    /// Makes the folder, and the folder of all templates when it isn't there.
    explicit CInstallFolder(const QString& strTargetFolder);
    /// Takes all of it away.
    ~CInstallFolder();
    Q_DISABLE_COPY_MOVE(CInstallFolder)

    /// Where the reply is kept; no file yet.
    QString ArchivePath() const;
    /// An empty folder for what is in the archive.
    QString NewFolder() const;

    /// Moves a finished folder from within NewFolder (or that itself) to the target. An old template goes
    /// when the new one stands; any failure leaves it as it was.
    void Install(const QString& strFinished);

private:
    bool Occupy(const QString& strWork);
    void PutInOrder();
    void Replace(const QByteArray& finished, const QByteArray& target);

    QString m_strTarget;
    QString m_strTemplates;
    QString m_strWork;
    std::unique_ptr<QLockFile> m_pLock;
};

/// What of an unpacked archive is the template: the folder itself when it holds pages, or else the one folder
/// in it that does, since an archive may be packed with the template's own folder or without. Throws
/// Torvane::CRunException when there is none.
QString FindTemplate(const QString& strFolder);

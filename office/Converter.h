#pragma once

#include "office/OfficeFiles.h"
#include "office/OfficeKind.h"

#include <QElapsedTimer>
#include <QLockFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// One conversion's folder and programs. What stands in the folder goes with the object. Paths are native.
namespace Torvane::Office {

class CConverter {
public:
    /// The time limit counts from here.
    CConverter(const MayGoOn& mayGoOn, qint64 nLimitMs);

    /// False when there is no place for the folder, or for the profile that keeps documents from running and
    /// loading anything. Then nothing is converted.
    bool IsReady() const { return m_bReady; }
    QString Path(const QString& strName) const { return m_folder.filePath(strName); }

    /// Has LibreOffice write the file in another format into the folder "out". The source stands in the
    /// conversion's folder. filter as LibreOffice's "--convert-to" takes it. Failed also when no output came.
    EConversion Convert(const QString& strSource, const QString& strFilter, const QString& strOutput);

    /// Draws the pages of a PDF file as pictures into a folder, which must stand.
    EConversion DrawPages(const QString& strPdf, const QStringList& options, const QString& strFolder);

    /// Done, or why it may not go on.
    EConversion State() const;

    /// Another limit, which counts from here.
    void StartLimit(qint64 nLimitMs);

    /// Whether the volume of the folder is full, which the programs themselves don't tell.
    bool IsOutOfSpace() const;

private:
    EConversion Run(const QString& strProgram, const QStringList& arguments, quint64 nMaxFileBytes);

    QTemporaryDir m_folder;
    /// Tells others that the folder is in use; the system forgets it with this process.
    QLockFile m_lock;
    MayGoOn m_mayGoOn;
    QElapsedTimer m_time;
    qint64 m_nLimitMs;
    bool m_bReady = false;
};

/// Deletes the folders of conversions whose program was killed. Those of running programs stay. Each program
/// does so before its first conversion.
void RemoveLeftFolders();

/// How long a file of that size may take: far longer than any that works takes on a slow machine.
qint64 TimeLimitMs(quint64 nSourceBytes);

/// Whether the office program, if it is here, can open that kind: writer, calc and impress are installed one
/// by one.
bool HasModuleFor(EKind eKind);

/// Native path of the program; empty when it isn't here.
QString OfficeProgram();
QString PdfProgram();

} // namespace Torvane::Office

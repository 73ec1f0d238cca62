#pragma once

#include "bench/Nobody.h"
#include "content/BookNode.h"
#include "course/TemplateStore.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <QDir>
#include <QFile>
#include <QProcess>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

inline void MustHold(bool bHolds, const char* szWhat) {
    if (!bHolds) {
        std::fprintf(stderr, "failed: %s\n", szWhat);
        std::exit(2);
    }
}

inline void RunTool(const QString& strTool, const QStringList& arguments) {
    MustHold(QProcess::execute(strTool, arguments) == 0, qPrintable(strTool));
}

inline void Write(const QString& strPath, qsizetype nBytes) {
    QFile file(strPath);
    MustHold(file.open(QIODevice::WriteOnly) && file.write(QByteArray(nBytes, 'x')) == nBytes, "write");
}

/// A new course, open, made by an installation of its own in the folder.
inline std::unique_ptr<CCourse> MakeCourse(const QString& strFolder, const CourseServices& services) {
    const QString strData = strFolder + u"/program/SysData"_s;
    QDir().mkpath(strData);
    QFile::link(QStringLiteral(VOREL_SEED_DATA), strData + u"/Data"_s);
    for (const QString& strName : {u"VorelTemplates"_s, u"SelfDefineTitle.ini"_s, u"Images"_s})
        QFile::link(QStringLiteral(VOREL_DELIVERED_DATA "/") + strName, strData + u'/' + strName);
    CSysInfo::Reset(Platform::FromNative(strFolder + u"/program/Vorel.exe"_s));
    QStringList templates;
    CTemplateStore(CSysInfo::Instance().GetTemplatesFolder(false)).ListTemplates(templates);
    CreateRecord record{{7, u"物理"_s, u"王老师"_s}, u"课"_s, {}, {}, templates.value(0)};
    record.Folder = Platform::FromNative(strFolder + u"/course"_s);
    const QString strProject = record.Folder + u"\\课.vcp"_s;
    CCourse(strProject, services).Create(record);
    auto pCourse = std::make_unique<CCourse>(strProject, services);
    MustHold(pCourse->Open(), "open the course");
    return pCourse;
}

/// Rows of the same length in a store of the same kind.
inline void InsertRows(const QString& strStore, int nNodes) {
    SQLite::Database store(strStore.toStdString(), SQLite::OPEN_READWRITE);
    store.exec("PRAGMA synchronous = FULL");
    SQLite::Transaction transaction(store);
    SQLite::Statement insert(store,
                             "INSERT INTO Book (Title, ParentId, [Index], Type, Path, TimeLastModified) "
                             "VALUES (?, 3, ?, 0, ?, '2026-01-05 08:00:00')");
    for (int n = 0; n < nNodes; ++n) {
        insert.bind(1, u"%1"_s.arg(n, 40, 16, QChar(u'A')).toStdString());
        insert.bind(2, n + 10);
        insert.bind(3, "N" + std::to_string(n) + "\\Content.htm");
        insert.exec();
        insert.reset();
    }
    transaction.commit();
}

#pragma once

#include "content/NodeFileParams.h"
#include "course/Course.h"
#include "foundation/Exceptions.h"
#include "foundation/FolderWalk.h"

#include <QStringList>

#include <functional>
#include <memory>

/// How one kind of content comes about: the node's row, and the files that fill an empty folder.
struct ContentRecipe {
    /// The path is that of the files below the node's folder, where there are any; else it stands here.
    NodeContent Row;

    /// Fills an empty folder, which ends with a backslash, and answers the path below it of what shows.
    /// Touches nothing else, so that another thread may do it. Throws Torvane::CRunException with the
    /// finished message; returns early, with any answer, when the filter, which may be null, says so.
    using FilesInto = std::function<QString(const QString& strFolder, Torvane::File::IWalkFilter* pFilter)>;
    /// Null for content without files.
    FilesInto Files;
    /// Gets native paths of what a copy passed over.
    std::shared_ptr<QStringList> PassedOver = std::make_shared<QStringList>();
};

/// The kinds, but for those that make other nodes or need another program. Nothing is read before the files
/// are made.
namespace Recipes {

/// Of the page of that name in the template, or its general page. Without a "Content.htm" where it has
/// neither.
ContentRecipe EditorPage(const QString& strTemplate, const QString& strPage, qint32 nOpenType);
bool HasPage(const QString& strTemplate, const QString& strPage);

struct ExternalFile {
    QString strPath;
    /// An Office file is saved as a web page.
    bool bAsWebPage = false;
    /// The folder "….files" beside a saved web page; empty when there is none.
    QString strFilesFolder;
};
/// As ContentRecipe::FilesInto says; native paths of what is passed over come into the last argument.
QString CopyExternalFile(const ExternalFile& file, const QString& strFolder,
                         Torvane::File::IWalkFilter* pFilter, QStringList* pPassedOver = nullptr);
/// The folder that a web page brings along: its path with ".files" for the extension. Not looked for.
QString FilesFolderOf(const QString& strPage);

/// For every kind but Video and Folder. bAsWebPage is the answer to the question about an Office file.
ContentRecipe Of(const CNodeFileParams& params, const CCourse& course, bool bAsWebPage);

} // namespace Recipes

/// The volume is full: nothing that follows would succeed either.
class CDiskFullException : public Torvane::CRunException {
public:
    using CRunException::CRunException;
};

/// There is no program here that converts Office files.
class CNoConverterException : public Torvane::CRunException {
public:
    using CRunException::CRunException;
};

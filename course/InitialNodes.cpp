#include "course/InitialNodes.h"

#include "course/LinkedTree.h"
#include "course/TemplateStore.h"
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype c_nFields = 5;

/// The lines of a text file; CR LF and LF both end one, and nothing follows the last line end.
QByteArrayList Lines(const QByteArray& text) {
    if (text.isEmpty())
        return {};
    QByteArrayList lines = text.split('\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    for (QByteArray& line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
    }
    return lines;
}

} // namespace

bool ReadInitialNodes(const QString& strPath, QList<InitialNode>& list) {
    QByteArray text;
    try {
        text = ReadFileBytes(strPath);
    } catch (const Torvane::CRunException&) {
        return false;
    }
    for (const QByteArray& line : Lines(text)) {
        QStringList fields;
        SplitText(CodePage::Decode(line), fields, u',');
        if (fields.size() != c_nFields)
            return false;
        list.append(
            {fields[0], ParseInt(fields[1]), ParseInt(fields[2]), fields[3], ParseInt(fields[4]) == 1});
    }
    return true;
}

bool LoadInitialNodes(const QString& strTemplate, QList<InitialNode>& list) {
    const CSysInfo& settings = CSysInfo::Instance();
    QString strPath = CTemplateStore(settings.GetTemplatesFolder(false)).GetInitialNodesPath(strTemplate);
    if (strPath.isEmpty() || !Torvane::File::IsFile(strPath))
        strPath = settings.GetSysDataFolder(true) + u"VorelInitialNodes.txt"_s;
    return ReadInitialNodes(strPath, list);
}

bool CreateInitialNodes(const QString& strTemplate, const QList<InitialNode>& list, qint32 nParentId,
                        IInitialNodeMaker& maker) {
    QList<TreeLinks> lines;
    for (const InitialNode& node : list)
        lines.append({node.FirstChild, node.NextSibling});
    const auto make = [&](qint32 nLine, qint32 nParent, std::optional<qint32>& below) {
        const InitialNode& node = list[nLine];
        if (!node.Selected)
            return true;
        const qint32 nId = maker.AddChild(nParent, node.Title);
        const QString& strPage = node.PageName.isEmpty() ? node.Title : node.PageName;
        if (node.FirstChild < 0)
            return maker.InitFromTemplatePage(nId, strTemplate, strPage);
        below = nId;
        return true;
    };
    return WalkLinkedTree(lines, 0, nParentId, make);
}

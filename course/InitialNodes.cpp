#include "course/InitialNodes.h"

#include "course/TemplateStore.h"
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"

#include <QSet>

#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// Lines may share what lies below them, so a list that leads in no circle may still unfold without measure.
constexpr qsizetype c_nMaxSteps = 100'000;

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

/// Walks the list with a stack of its own, since a list may lead as deep as it is long.
class CTreeMaker {
public:
    CTreeMaker(const QString& strTemplate, const QList<InitialNode>& list, IInitialNodeMaker& maker)
        : m_strTemplate(strTemplate), m_list(list), m_maker(maker) {}

    bool Run(qint32 nParentId) {
        m_levels.push_back({nParentId, 0, {}});
        while (!m_levels.empty()) {
            if (!Step())
                return false;
        }
        return true;
    }

private:
    /// One parent whose children are being made, and the lines used for them so far.
    struct Level {
        qint32 nParentId;
        qint32 nLine;
        std::vector<qint32> used;
    };

    bool Step() {
        const qint32 nLine = m_levels.back().nLine;
        if (nLine < 0 || nLine >= m_list.size() || m_onRoad.contains(nLine) || ++m_nSteps > c_nMaxSteps)
            return false;
        m_onRoad.insert(nLine);
        m_levels.back().used.push_back(nLine);
        const InitialNode& node = m_list[nLine];
        m_levels.back().nLine = node.NextSibling;
        if (node.Selected && !Make(node))
            return false;
        while (!m_levels.empty() && m_levels.back().nLine < 0)
            Leave();
        return true;
    }

    bool Make(const InitialNode& node) {
        const qint32 nId = m_maker.AddChild(m_levels.back().nParentId, node.Title);
        if (node.FirstChild >= 0) {
            m_levels.push_back({nId, node.FirstChild, {}});
            return true;
        }
        const QString& strPage = node.PageName.isEmpty() ? node.Title : node.PageName;
        return m_maker.InitFromTemplatePage(nId, m_strTemplate, strPage);
    }

    void Leave() {
        for (const qint32 nLine : m_levels.back().used)
            m_onRoad.remove(nLine);
        m_levels.pop_back();
    }

    const QString& m_strTemplate;
    const QList<InitialNode>& m_list;
    IInitialNodeMaker& m_maker;
    std::vector<Level> m_levels;
    QSet<qint32> m_onRoad;
    qsizetype m_nSteps = 0;
};

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
    return CTreeMaker(strTemplate, list, maker).Run(nParentId);
}

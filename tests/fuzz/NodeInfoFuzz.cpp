// The index of a subtree from a stranger: what it plans ends, hangs together, and stays in the nodes'
// folders.
#include "content/NodeInfo.h"
#include "foundation/Exceptions.h"
#include "tests/support/FuzzCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    try {
        const QList<NodeInfoRecord> records = ParseNodeInfo(FuzzBytes(pData, nSize));
        const QList<NodeInfoStep> steps = PlanImport(records);
        for (qsizetype n = 0; n < steps.size(); ++n) {
            Check(steps[n].nParent < n && (steps[n].nParent >= 0 || n == 0), "parents come first");
            const NodeInfoRecord& record = records[steps[n].nRecord];
            const QString strPath = ImportedPath(record.Type, record.Path, 40);
            Check(record.Type == -1 || strPath.contains(QLatin1String("://")) ||
                      !strPath.split(u'\\').contains(QLatin1String("..")),
                  "no path leads up");
        }
    } catch (const Torvane::CRunException&) {
        return 0;
    }
    return 0;
}

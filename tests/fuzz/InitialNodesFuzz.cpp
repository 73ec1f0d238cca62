// A suggested tree from a downloaded template: reading and making always end.
#include "course/InitialNodes.h"
#include "tests/fuzz/FuzzFile.h"

namespace {

class CCountingMaker : public IInitialNodeMaker {
public:
    qint32 AddChild(qint32, const QString&) override { return ++m_nMade; }
    bool InitFromTemplatePage(qint32, const QString&, const QString&) override { return true; }
    qint32 m_nMade = 3;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    QList<InitialNode> list;
    ReadInitialNodes(FuzzFile(QStringLiteral("InitialNodes.txt"), pData, nSize), list);
    for (const InitialNode& node : list)
        Check(!node.Title.contains(QLatin1Char('\n')) && !node.Title.contains(QLatin1Char(',')),
              "a title is one field of one line");
    CCountingMaker maker;
    CreateInitialNodes(QStringLiteral("t"), list, 3, maker);
    Check(maker.m_nMade <= 100'003, "the tree has an end");
    return 0;
}

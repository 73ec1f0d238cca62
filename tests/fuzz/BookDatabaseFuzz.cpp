// A damaged course database: every operation answers or throws its own exception.
#include "course/BookDatabase.h"
#include "foundation/Exceptions.h"
#include "tests/fuzz/FuzzFile.h"

#include <functional>

namespace {

void Try(const std::function<void()>& step) {
    try {
        step();
    } catch (const Torvane::COM::CCOMException&) {
        return;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    CBookDatabase database(FuzzFile(QStringLiteral("a.mdb"), pData, nSize), 42);
    bool bOpen = false;
    Try([&] { bOpen = database.Open(); });
    if (!bOpen)
        return 0;
    QList<NodeHeader> list;
    qint32 nNew = 4;
    Try([&] { database.GetChildren(3, list); });
    Try([&] { database.GetChildIds(3); });
    Try([&] { database.GetGrandchildren(3); });
    Try([&] { database.GetNode(3); });
    Try([&] { database.GetTotalSize(); });
    Try([&] { nNew = database.AddNode(3, QStringLiteral("栏目")); });
    Try([&] { database.SetContent(nNew, {0, QStringLiteral("N4\\Content.htm"), 1, {}, {}}); });
    Try([&] { database.SetTitle(4, QStringLiteral("标题")); });
    Try([&] { database.MoveTo(4, nNew); });
    Try([&] { database.MoveUp(nNew); });
    Try([&] { database.MoveDown(4); });
    Try([&] { database.DeleteNode(4); });
    Try([&] { database.HasChild(3, QStringLiteral("栏目")); });
    Try([&] { database.PauseForReaders(); });
    return 0;
}

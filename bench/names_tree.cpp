// The least that a tree of this toolkit costs: reads the names of a document of CherryTree, and nothing else
// of it, into a tree with its first level open. What open.sh's other sides are held against for scale.
//   bench_names_tree FILE
#include <SQLiteCpp/SQLiteCpp.h>

#include <QApplication>
#include <QHash>
#include <QMainWindow>
#include <QTreeWidget>

namespace {

void Fill(QTreeWidget& tree, const char* pszFile) {
    const SQLite::Database database(pszFile, SQLite::OPEN_READONLY);
    // Parents come before their children in it.
    SQLite::Statement nodes(database, "SELECT node.node_id, father_id, name FROM node JOIN children "
                                      "ON children.node_id = node.node_id ORDER BY node.node_id");
    QHash<int, QTreeWidgetItem*> items;
    QList<QTreeWidgetItem*> top;
    while (nodes.executeStep()) {
        auto* pItem = new QTreeWidgetItem(QStringList{QString::fromUtf8(nodes.getColumn(2).getText())});
        items.insert(nodes.getColumn(0).getInt(), pItem);
        if (QTreeWidgetItem* pParent = items.value(nodes.getColumn(1).getInt()))
            pParent->addChild(pItem);
        else
            top.append(pItem);
    }
    tree.addTopLevelItems(top);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 2)
        return 2;
    QMainWindow window;
    auto* pTree = new QTreeWidget;
    pTree->setUniformRowHeights(true);
    Fill(*pTree, argv[1]);
    window.setCentralWidget(pTree);
    window.resize(1024, 700);
    window.show();
    return QApplication::exec();
}

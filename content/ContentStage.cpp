#include "content/ContentStage.h"

#include "content/BookNode.h"
#include "foundation/Files.h"

using namespace Torvane::File;

CContentStage::CContentStage(const CBookNode& node) : m_strNodeFolder(node.GetFolder()) {
    node.EnsureFolder();
    const QString strPlace = AddBackslash(ParentFolder(WithoutBackslash(m_strNodeFolder)));
    // One that a crash has left behind.
    const QString strName = u'~' + BareName(WithoutBackslash(m_strNodeFolder));
    if (GetPathKind(strPlace + strName) != EPathKind::Nothing)
        TryDeleteFolder(strPlace + strName);
    m_strFolder = strPlace + MakeUniqueName(strName, strPlace) + u'\\';
    CreateFolderPath(WithoutBackslash(m_strFolder));
}

CContentStage::~CContentStage() {
    Remove();
}

void CContentStage::Exchange() {
    ExchangeFolders(m_strFolder, m_strNodeFolder);
}

void CContentStage::Remove() const {
    TryDeleteFolder(WithoutBackslash(m_strFolder));
}

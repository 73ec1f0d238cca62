#pragma once

#include <QDialog>

class QButtonGroup;

/// The dialog "设置打开类型": in which window a node's content opens.
class COpenTypeDialog : public QDialog {
    Q_OBJECT
public:
    /// A present value that is none of the four shows as 0.
    COpenTypeDialog(qint32 nPresent, QWidget* pParent);

    /// 0 to 3.
    qint32 GetOpenType() const;

private:
    QButtonGroup* m_pTypes;
};

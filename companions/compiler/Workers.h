#pragma once

#include <functional>

/// Does every piece of work from 0 to nCount - 1, on as many threads as pay. The first failure ends it and is
/// thrown on. work may be called by several threads at a time.
void ForEachPiece(int nCount, const std::function<void(int nPiece)>& work);

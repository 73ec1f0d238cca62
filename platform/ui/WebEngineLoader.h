#pragma once

#include <memory>

class IWebEngine;
class QWidget;

/// Begins to load the engine's module on another thread, and starts the engine when that is done, from the
/// event loop, but not within a step that only keeps the windows painted. Whoever knows that a page will be
/// shown soon calls this; a second call does nothing.
void PrepareWebEngine();

/// Makes an engine, and the engine's module ready before, while the windows are painted: the parent may go
/// meanwhile. Null when it did, when the program ends, and when there is no module that loads.
std::unique_ptr<IWebEngine> MakeWebEngine(QWidget* pParent);

#pragma once

#include <memory>

class IWebEngine;
class QWidget;

/// Loads the engine's module at first use. Null when there is none that loads.
std::unique_ptr<IWebEngine> MakeWebEngine(QWidget* pParent);

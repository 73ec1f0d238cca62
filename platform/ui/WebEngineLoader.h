#pragma once

#include <memory>

class IWebEngine;
class QWidget;

/// Loads the engine's module at first use: from the program's folder, from "../lib" beside it, or from the
/// folder that the environment variable VOREL_ENGINE_FOLDER names. Null when there is none that loads.
std::unique_ptr<IWebEngine> MakeWebEngine(QWidget* pParent);

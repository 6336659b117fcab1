#pragma once

#include <QString>

namespace spectrane {

/// `text` in one line, cut at the width of a text field of a file, where each character is one byte wide.
QString FitText(const QString& text, qsizetype width);

}  // namespace spectrane

#pragma once

#include <QByteArray>

class QImage;

/// Pictures as PNG files. The toolkit's writer tries every filter on every row, which takes many
/// times as long as drawing; drawings are flat and compress well without any.
namespace ZelModelPng {

/// The bytes of a file; empty for a null picture or without memory.
QByteArray bytesOf(const QImage &image);

} // namespace ZelModelPng

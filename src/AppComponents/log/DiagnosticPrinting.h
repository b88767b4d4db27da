#pragma once

/// \file
/// Insertion of Qt's geometry and string types into wide streams, those of log accessors above
/// all. Numbers take the stream's own formatting; nothing else is written.

#include <AppComponents/AppComponentsExport.h>

#include <ostream>

class QPoint;
class QPointF;
class QRect;
class QRectF;
class QString;

/// "QPoint(x,y)"
APPCOMPONENTS_EXPORT std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out,
                                                             const QPoint& point);
/// "QPointF(x,y)"
APPCOMPONENTS_EXPORT std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out,
                                                             const QPointF& point);
/// "QRect(topleft(x,y),size(width,height)": the outer parenthesis stays open
APPCOMPONENTS_EXPORT std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out,
                                                             const QRect& rect);
/// "QRectF(topleft(x,y),size(width,height)": the outer parenthesis stays open
APPCOMPONENTS_EXPORT std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out,
                                                             const QRectF& rect);
/// The characters of \p text
APPCOMPONENTS_EXPORT std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out,
                                                             const QString& text);

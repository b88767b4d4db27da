#include <AppComponents/log/DiagnosticPrinting.h>

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QString>

namespace
{

template <typename Point>
std::basic_ostream<wchar_t>& printPoint(std::basic_ostream<wchar_t>& out, const wchar_t* type,
                                        const Point& point)
{
    return out << type << L'(' << point.x() << L',' << point.y() << L')';
}

template <typename Rect>
std::basic_ostream<wchar_t>& printRect(std::basic_ostream<wchar_t>& out, const wchar_t* type,
                                       const Rect& rect)
{
    return out << type << L"(topleft(" << rect.x() << L',' << rect.y() << L"),size(" << rect.width()
               << L',' << rect.height() << L')';
}

} // namespace

std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out, const QPoint& point)
{
    return printPoint(out, L"QPoint", point);
}

std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out, const QPointF& point)
{
    return printPoint(out, L"QPointF", point);
}

std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out, const QRect& rect)
{
    return printRect(out, L"QRect", rect);
}

std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out, const QRectF& rect)
{
    return printRect(out, L"QRectF", rect);
}

std::basic_ostream<wchar_t>& operator<<(std::basic_ostream<wchar_t>& out, const QString& text)
{
    return out << text.toStdWString();
}

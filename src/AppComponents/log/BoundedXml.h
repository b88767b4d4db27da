#pragma once

#include <QString>

class QIODevice;

/// Deepest nesting of elements that the library's readers follow.
constexpr int maxXmlDepth = 1000;

/// Reads the XML document in \p device to its end, decoded.
///
/// Documents that no person writes could cost a reader unbounded time or memory. Where a document
/// exceeds a bound, or holds bytes that its encoding does not allow, the text is cut and given an
/// end that no document may have: a reader finds what stands before, and then an error. The
/// bounds are
/// - a file of 64 MiB;
/// - a document type of 16 Ki characters, and 4096 that a reference inside it expands to;
/// - 1 Mi characters of expanded entities, of which markup counts by its square;
/// - 64 Mi comparisons of the attributes of tags with each other and with what the document
///   declares: some 8,000 attributes in one tag, or more ordinary tags than a file can hold.
///
/// Nesting is left to the reader.
QString readBoundedXml(QIODevice& device);

/// How many characters one entity may expand to: what a QXmlStreamReader must be set to in order
/// to read everything that readBoundedXml() lets pass.
constexpr int maxXmlExpansion = 1 << 20;

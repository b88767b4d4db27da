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
/// bounds are a file of 64 MiB, 1 MiB of expanded entities, entities without markup, 100
/// attributes per element, and no parameter entities or attribute lists in the document type.
/// Nesting is left to the reader.
QString readBoundedXml(QIODevice& device);

/// How many characters one entity may expand to: what a QXmlStreamReader must be set to in order
/// to read everything that readBoundedXml() lets pass.
constexpr int maxXmlExpansion = 1 << 20;

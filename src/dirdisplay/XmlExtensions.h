#pragma once

#include <libxml/tree.h>
#include <libxslt/xsltInternals.h>

#include <optional>
#include <string>

namespace brackwell {

// Wherever a stylesheet names an extension that libxslt does not have, it looks for a library of that name
// and loads it. So it is never asked for what it does not have. It has the element "document" by its several
// names, which writes files and is forbidden anyway, "debug", and the function "node-set".

/// The namespace and name of an element in the stylesheet that is an extension and not known; nothing where
/// there is none.
std::optional<std::string> UnknownExtension(xmlDoc& stylesheet);

/// Lets a transformation call and ask for known extensions only.
void KeepToKnownExtensions(xsltTransformContext& context);

}  // namespace brackwell

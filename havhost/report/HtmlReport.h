// HtmlReport: a namespace as one page for a browser, which needs nothing beside itself.
//
// The page holds the namespace as JSON in a script element that is data, not code; its own
// script shows it, as text only. The JSON:
//
//   {"program", "namespace", "classes": [class...], "instances": [instance...]}
//   class     {"name", "superclass", "kind", "abstract", "columns": [[name, type]...],
//              "qualifiers", "properties", "methods"}: the columns are those of its instances;
//              properties and methods are those that it declares itself
//   instance  {"class", "path", "title", "parent", "via", "cells": [cell...]}: class and via (the
//              association that leads to the parent) are indexes into classes, parent is one into
//              instances; both are left out at a root
//   cell      null where the instance has no such property; a text that is display text and value
//              in one; or [display text, value], where the texts and values of an array are arrays
//
// Integers that a browser would round are texts.
//
// Errors:  THAVException of the namespace.
// Threads: one thread at a time per namespace.
#pragma once

#include <string>
#include <string_view>

#include <boost/shared_ptr.hpp>

#include "havcore/ICIMClass.h"
#include "havcore/ICIMNamespace.h"

namespace havhost {

// Returns the page. With `top`, only the instances of that class or a subclass and what hangs on
// them. Complexity: O(n log n) in instances and links.
std::string HtmlReport(NORVHAV20::ICIMNamespace& target, const std::string& namespaceName,
                       const boost::shared_ptr<NORVHAV20::ICIMClass>& top = {});

// The Content-Security-Policy that fits every such page. The page states it itself; a server may
// send it as well.
std::string_view HtmlReportPolicy();

}  // namespace havhost

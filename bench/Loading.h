// Loading: the same objects, loaded from a MOF text and made through the contract: what a load
// costs beyond making is what it costs to read and to check.
#pragma once

#include <cstddef>
#include <string>

#include "havcore/havcore.h"

namespace havbench {

// What a text holds, in which order.
enum class Loading { kThings, kLinksLast, kLinksFirst };

// A text with two classes and `count` objects: things of three properties, and where there are
// links as many of them as things, each from one thing to another.
std::string LoadingText(Loading kind, std::size_t count);
// A text with that many classes of three properties, ten levels deep.
std::string ClassesText(std::size_t count);

// Empty when anything was wrong with the text.
boost::shared_ptr<NORVHAV20::ICIMNamespace> LoadText(const std::string& text);
// The classes of the text with the same objects.
boost::shared_ptr<NORVHAV20::ICIMNamespace> MakeObjects(Loading kind, std::size_t count);
// The classes of ClassesText.
boost::shared_ptr<NORVHAV20::ICIMNamespace> MakeClasses(std::size_t count);

// How many objects, or classes, a namespace holds.
std::size_t CountObjects(NORVHAV20::ICIMNamespace& ns);
std::size_t CountClasses(NORVHAV20::ICIMNamespace& ns);

}  // namespace havbench

// One export on one picture: what it reads is made of the picture, what it writes becomes a picture again.
#pragma once

#include <string>
#include <vector>

#include "tools/catalogue/caller.h"
#include "tools/picture.h"

namespace zim::tool {

// The exports that lead from colours as any picture has them to the source of this one, in the order of their calls.
// Throws Failure if the library has none.
std::vector<const catalogue::Export*> wayToSource(const catalogue::Export& e);

// Memory for a side with room for incomplete groups of sub-sampled chroma, whether or not its export uses them: what
// one export writes another may read, and files hold them.
catalogue::Image roomFor(catalogue::Side side, ZimiSize size);

class Job {
 public:
  // Settings are "name=number" or, for arrays, "name=number,number,...".
  Job(const catalogue::Export& e, const Picture& picture, const std::vector<std::string>& settings);
  // The same on samples as they are.
  Job(const catalogue::Export& e, catalogue::Image source, const std::vector<std::string>& settings);

  // Throws Failure if the library reports anything but success. In place, every call works on the last one's result.
  void run();
  const catalogue::Image& result() const { return export_.inPlace ? source_ : destination_; }
  // Colours as a colour picture, other models as their channels side by side.
  Picture picture() const;

 private:
  const catalogue::Export& export_;
  catalogue::Image source_, destination_;
  catalogue::Operands operands_;
  catalogue::Caller caller_;
};

// Calls the export and throws Failure if the library reports anything but success.
void call(const catalogue::Export& e, const catalogue::Caller& caller, const catalogue::Operands& operands);

// The export of this name; throws Failure if there is none.
const catalogue::Export& exportNamed(const std::string& name);

}  // namespace zim::tool

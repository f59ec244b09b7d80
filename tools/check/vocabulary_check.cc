#include "check/vocabulary_check.h"

#include <algorithm>

#include "app/suggestion.h"
#include "check/file_vocabulary.h"

namespace qrconfig {

namespace {

std::string DidYouMean(const std::string& suggestion) {
  return suggestion.empty() ? "" : " (did you mean \"" + suggestion + "\"?)";
}

std::string Fix(const std::string& what, const std::string& suggestion) {
  if (!suggestion.empty()) return "Write \"" + suggestion + "\"; names are case-sensitive.";
  return "Remove the " + what + " or correct its name; docs/file-formats.md lists the names.";
}

void CheckFile(const ScannedFile& file, Findings& findings) {
  std::vector<std::string> elementNames;
  for (const ElementWords& words : VocabularyOf(file.Kind))
    elementNames.emplace_back(words.Element);
  const std::string kindName = FileKindName(file.Kind);

  for (const XmlElement& element : file.Document.Elements) {
    if (element.Depth == 0) continue;  // the root's name and attributes are free
    const ElementWords* words = FindElement(file.Kind, element.Name);
    if (words == nullptr) {
      const std::string suggestion = Suggestion(element.Name, elementNames);
      findings.Add(Severity::Warning, FindingKind::UnknownElement, file.Document.Path, element.Line,
                   "The " + kindName + " has no element \"" + element.Name +
                       "\": the reader passes over it" + DidYouMean(suggestion) + ".",
                   Fix("element", suggestion));
      continue;
    }
    std::vector<std::string> attributeNames(words->Attributes.begin(), words->Attributes.end());
    for (const auto& [name, value] : element.Attributes) {
      if (std::find(attributeNames.begin(), attributeNames.end(), name) != attributeNames.end())
        continue;
      const std::string suggestion = Suggestion(name, attributeNames);
      findings.Add(Severity::Warning, FindingKind::UnknownAttribute, file.Document.Path,
                   element.Line,
                   "The reader of the " + kindName + " ignores the attribute \"" + name +
                       "\" of <" + element.Name + ">" + DidYouMean(suggestion) + ".",
                   Fix("attribute", suggestion));
    }
    const std::string* id = element.Attribute("id");
    if (file.Kind == FileKind::Localised && element.Name == "Message" && id != nullptr &&
        *id != "Name" && *id != "Comment") {
      const std::string suggestion = Suggestion(*id, {"Name", "Comment"});
      findings.Add(Severity::Warning, FindingKind::UnknownValue, file.Document.Path, element.Line,
                   "The message id \"" + *id +
                       "\" is neither \"Name\" nor \"Comment\": the reader drops the message" +
                       DidYouMean(suggestion) + ".",
                   Fix("message", suggestion));
    }
  }
}

}  // namespace

void VocabularyCheck::Run(const Installation& installation, Findings& findings) const {
  for (const ScannedFile* file : installation.ScannedFiles()) CheckFile(*file, findings);
}

}  // namespace qrconfig

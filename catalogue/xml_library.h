// The two readers that hold the XML library started, each from its first use to the end of the client. The library
// counts starts, so they do not mind each other.
#ifndef CATALOGUE_XML_LIBRARY_H
#define CATALOGUE_XML_LIBRARY_H

namespace catalogue {

class XmlLibraryUser {
public:
  XmlLibraryUser();
  XmlLibraryUser(const XmlLibraryUser &) = delete;
  XmlLibraryUser &operator=(const XmlLibraryUser &) = delete;
  virtual ~XmlLibraryUser();
  // False when the library would not start, which has been reported.
  [[nodiscard]] bool IsReady() const { return ready; }

private:
  bool ready = false;
};

class TransformationScenarioReader : public XmlLibraryUser {
public:
  [[nodiscard]] static TransformationScenarioReader &GetInstance();
};

class StylesheetParameterReader : public XmlLibraryUser {
public:
  [[nodiscard]] static StylesheetParameterReader &GetInstance();
};

} // namespace catalogue

#endif

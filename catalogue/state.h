// What the rooms of the catalogue keep between calls, for ShutDownCatalogue to give back.
#ifndef CATALOGUE_STATE_H
#define CATALOGUE_STATE_H

namespace catalogue {

void ForgetDefaultTransformationFile() noexcept;

} // namespace catalogue

#endif

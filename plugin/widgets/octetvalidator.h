#ifndef OCTETVALIDATOR_H
#define OCTETVALIDATOR_H
// Placeholder: being built.
#endif

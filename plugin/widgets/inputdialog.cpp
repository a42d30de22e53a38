#include "inputdialog.h"

bool InputDialog::p_move = false;

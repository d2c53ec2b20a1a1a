#include "plain/frontend.h"

int main() { plain::run_engine(); }

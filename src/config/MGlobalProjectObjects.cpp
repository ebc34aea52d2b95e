#include "config/MGlobalProjectObjects.h"

std::vector<SiteRecord> MGlobalProjectObjects::URLDATA;
long MGlobalProjectObjects::lCurrentURL = 0;

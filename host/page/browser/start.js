import {openPage} from "./page.js";

void openPage();
